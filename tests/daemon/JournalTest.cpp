#include "Journal.h"

#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wire/Tree.h>

#include "Interface.h"

namespace {

using nlohmann::json;
using wire::Direction;

NORVEX_INTERFACE(Shown, Do)

class ShownInterface : public sim::Interface {
public:
    ShownInterface() : Interface(interfaces::kTable<ShownMethod>, Calls::ToInterface) {
        Add(ShownMethod::Do,
            {sim::Out("status", sim::kInt), sim::In("service", sim::kNumber64), sim::In("text", sim::kText),
             sim::Out("screen", sim::kText)},
            &ShownInterface::Do);
    }

private:
    void Do(const sim::Call&, const sim::ArgumentReader&, sim::ReplyWriter&) {}
};

class JournalTest : public testing::Test {
protected:
    void Add(sim::Journal& journal, const std::string& text = "text", const std::string& screen = "screen") {
        m_arguments.Clear();
        m_results.Clear();
        wire::TreeWriter arguments(m_arguments);
        arguments.PutValue(0, std::int32_t{-1});
        arguments.PutValue(1, std::uint64_t{0x8000000000000001}, Direction::In);
        arguments.PutText(2, text, Direction::In);
        const std::uint32_t length = 5;
        arguments.PutLeaf(3, wire::NodeKind::Length, &length, sizeof length);
        wire::TreeWriter results(m_results);
        results.PutValue(0, std::int32_t{1});
        results.PutText(3, screen);
        journal.Add({journal.TakeSequence(),
                     4,
                     5,
                     &m_interface,
                     m_interface.GetOperations()[0].get(),
                     m_interface.GetName(),
                     "Do",
                     0,
                     nullptr,
                     {},
                     {m_arguments.GetData(), m_arguments.GetSize()},
                     {m_results.GetData(), m_results.GetSize()}});
    }

    ShownInterface m_interface;
    wire::Buffer m_arguments;
    wire::Buffer m_results;
};

TEST_F(JournalTest, ACallIsDescribedAsJson) {
    sim::Journal journal;
    Add(journal);
    json call = journal.Describe(0);
    EXPECT_GT(call["time"], 0);
    EXPECT_EQ(call["interface"], m_interface.GetName());
    for (const char* name : {"time", "interface"})
        call.erase(name);
    EXPECT_EQ(call, json::parse(R"({
        "sequence": 1, "client": 4, "session": 5, "id": 0, "method": "Do",
        "arguments": [
            {"place": 0, "direction": "out", "name": "status", "type": "int", "value": -1},
            {"place": 1, "direction": "in", "name": "service", "type": "64 bits",
             "value": "0x8000000000000001"},
            {"place": 2, "direction": "in", "name": "text", "type": "text", "value": "text"},
            {"place": 3, "direction": "out", "name": "screen", "type": "text", "length": 5}],
        "results": [
            {"place": 0, "direction": "out", "name": "status", "type": "int", "value": 1},
            {"place": 3, "direction": "out", "name": "screen", "type": "text",
             "value": "screen"}]})"));
}

TEST_F(JournalTest, MalformedArgumentsAreShownAsBytes) {
    sim::Journal journal;
    wire::TreeWriter tree(m_arguments);
    tree.PutValue(0, std::uint16_t{0xABCD}, Direction::In);
    journal.Add({1,
                 1,
                 0,
                 nullptr,
                 nullptr,
                 "INone",
                 "Go",
                 9,
                 nullptr,
                 "unknown operation",
                 {m_arguments.GetData(), m_arguments.GetSize()},
                 {}});
    const json call = journal.Describe(0);
    EXPECT_EQ(call["interface"], "INone");
    EXPECT_EQ(call["method"], "Go");
    EXPECT_EQ(call["id"], 9);
    EXPECT_EQ(call["fault"], "unknown operation");
    EXPECT_EQ(call["arguments"], json::parse(R"([{"place": 0, "direction": "in",
                                                   "value": {"hex": "cdab"}}])"));
}

TEST_F(JournalTest, TheOldestAreEvicted) {
    // Room for a few calls; sizes vary, so that many cases at the ring's end occur.
    sim::Journal journal(4096, 1000);
    for (std::size_t call = 0; call < 500; ++call) {
        Add(journal, std::string(call % 97, 'w'), std::string(call % 113, 's'));
        ASSERT_EQ(journal.GetEnd(), call + 1);
        ASSERT_TRUE(call < 6 || journal.GetEnd() - journal.GetBegin() > 5);
        for (std::uint64_t place = journal.GetBegin(); place < journal.GetEnd(); ++place) {
            const json described = journal.Describe(place);
            ASSERT_EQ(described["sequence"], place + 1);
            ASSERT_EQ(described["arguments"][2]["value"], std::string(place % 97, 'w'));
            ASSERT_EQ(described["results"][1]["value"], std::string(place % 113, 's'));
        }
    }
}

TEST_F(JournalTest, TheNumberOfEntriesIsBounded) {
    sim::Journal journal(1u << 20, 3);
    for (int call = 0; call < 10; ++call)
        Add(journal);
    EXPECT_EQ(journal.GetBegin(), 7u);
    EXPECT_EQ(journal.GetEnd(), 10u);
    EXPECT_EQ(journal.Describe(7)["sequence"], 8);
}

TEST_F(JournalTest, ALongTreeIsCutAndMarked) {
    sim::Journal journal;
    Add(journal, "text", std::string(100000, 's'));
    const json call = journal.Describe(0);
    EXPECT_EQ(call["resultsCut"], m_results.GetSize());
    EXPECT_FALSE(call.contains("argumentsCut"));
    EXPECT_EQ(call["results"][0]["value"], 1);
    const auto shown = call["results"][1]["value"].get<std::string>();
    EXPECT_GT(shown.size(), 10000u);
    EXPECT_EQ(shown, std::string(shown.size(), 's'));
}

TEST_F(JournalTest, SequencesGoOnAfterAClear) {
    sim::Journal journal;
    Add(journal);
    journal.Clear();
    EXPECT_EQ(journal.GetBegin(), journal.GetEnd());
    Add(journal);
    EXPECT_EQ(journal.Describe(journal.GetBegin())["sequence"], 2);
}

} // namespace
