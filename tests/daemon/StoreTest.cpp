#include <map>
#include <string>

#include <gtest/gtest.h>

#include "NumberStore.h"

namespace {

class StoreTest : public testing::Test {
protected:
    StoreTest() { EXPECT_TRUE(m_database.Open({}) && m_numbers.Prepare()); }

    std::map<std::string, std::int64_t> Read(const char* part) {
        std::map<std::string, std::int64_t> numbers;
        m_numbers.ForEach(part, [&](std::string_view key, std::int64_t value) { numbers[std::string(key)] = value; });
        return numbers;
    }

    sim::Database m_database;
    sim::NumberStore m_numbers{m_database};
};

using Numbers = std::map<std::string, std::int64_t>;

TEST_F(StoreTest, ANumberThatIsKeptAgainIsTheNewOne) {
    EXPECT_TRUE(m_numbers.Put("part", "key", 1));
    EXPECT_TRUE(m_numbers.Put("part", "key", -2));
    EXPECT_EQ(Read("part"), (Numbers{{"key", -2}}));
}

TEST_F(StoreTest, PartsAreClearedByThemselves) {
    for (const char* part : {"a", "b", "c"})
        EXPECT_TRUE(m_numbers.Put(part, "key", 1));
    EXPECT_TRUE(m_numbers.Clear("b"));
    EXPECT_EQ(Read("a").size(), 1u);
    EXPECT_EQ(Read("b").size(), 0u);
    EXPECT_EQ(Read("c").size(), 1u);
}

TEST_F(StoreTest, AStatementThatFailedRunsAgain) {
    ASSERT_TRUE(m_database.Execute("CREATE TABLE once (number INTEGER PRIMARY KEY)"));
    sim::Statement insert;
    ASSERT_TRUE(insert.Prepare(m_database, "INSERT INTO once VALUES (?1)"));
    const auto run = [&](std::int64_t number) {
        insert.Bind(1, number);
        return insert.Run();
    };
    EXPECT_TRUE(run(1));
    EXPECT_FALSE(run(1));
    EXPECT_TRUE(run(2));
}

} // namespace
