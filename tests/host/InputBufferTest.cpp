#include "InputBuffer.h"

#include <gtest/gtest.h>

#include <istream>
#include <string>
#include <vector>

namespace {

// Hands out the given blocks, one a call.
class TCBlocks : public host::IWordSource {
public:
    explicit TCBlocks(std::vector<std::string> blocks) : m_Blocks(std::move(blocks)) {}

    std::string_view Next() override {
        return m_Asked < m_Blocks.size() ? std::string_view(m_Blocks[m_Asked++])
                                         : (++m_Asked, std::string_view());
    }

    std::size_t Asked() const { return m_Asked; }

private:
    std::vector<std::string> m_Blocks;
    std::size_t m_Asked = 0;
};

class InputBuffer : public testing::Test {
protected:
    host::TCInputBuffer::TSHooks Hooks(bool typed) {
        host::TCInputBuffer::TSHooks hooks;
        hooks.m_BeforeWait = [this] { ++m_Waits; };
        hooks.m_AtEnd = [this] { ++m_Ends; };
        if (typed) {
            hooks.m_Typed = [this](std::string_view text) { m_Typed += text; };
        }
        return hooks;
    }

    int m_Waits = 0;
    int m_Ends = 0;
    std::string m_Typed;
};

TEST_F(InputBuffer, HandsOutTheWordsOfABlockWithoutAskingAgain) {
    TCBlocks blocks({"one two\nthree\n"});
    host::TCInputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    for (const char* expected : {"one", "two", "three"}) {
        std::string word;
        in >> word;
        EXPECT_EQ(word, expected);
    }
    EXPECT_EQ(blocks.Asked(), 1U);
    EXPECT_EQ(m_Waits, 1);
    EXPECT_EQ(m_Ends, 0);
}

TEST_F(InputBuffer, TheLastWordCountsWithoutALineEndAndBeforeTheEnd) {
    TCBlocks blocks({"one\n9", "9"});
    host::TCInputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    std::string word;
    in >> word >> word;
    EXPECT_EQ(word, "99");
    EXPECT_TRUE(in.good());
    EXPECT_EQ(m_Ends, 0) << "the end came before the last word had its effect";
    in >> word;
    EXPECT_EQ(m_Ends, 1);
}

TEST_F(InputBuffer, ASourceThatHasEndedIsNotAskedAgain) {
    TCBlocks blocks({"99"});
    host::TCInputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    std::string word;
    in >> word >> word;
    EXPECT_EQ(blocks.Asked(), 2U);
    EXPECT_EQ(m_Waits, 2);
}

TEST_F(InputBuffer, ALineEndIsAddedOnlyWhereItIsMissing) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"a\n", "a\n"}, {"a", "a\n"}, {"a ", "a \n"}, {"", ""}};
    for (const auto& [given, read] : texts) {
        TCBlocks blocks({given});
        host::TCInputBuffer buffer(blocks, Hooks(false));
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}), read) << given;
    }
}

TEST_F(InputBuffer, AWordOf200000BytesArrivesWhole) {
    const std::string part(50000, 'x');
    TCBlocks blocks({part, part, part, part});
    host::TCInputBuffer buffer(blocks, Hooks(true));
    std::istream in(&buffer);
    std::string word;
    in >> word;
    EXPECT_EQ(word, part + part + part + part);
    EXPECT_EQ(m_Typed, word + "\n");
}

TEST_F(InputBuffer, TypedWordsAreToldOneByOneAsTheyAreRead) {
    TCBlocks blocks({" 5  1\n\n", "9", "9\t8 ", "7"});
    host::TCInputBuffer buffer(blocks, Hooks(true));
    std::istream in(&buffer);
    std::string word;
    const std::vector<std::string> told = {"5\n", "5\n1\n", "5\n1\n99\n", "5\n1\n99\n8\n",
                                           "5\n1\n99\n8\n7\n"};
    for (const std::string& soFar : told) {
        in >> word;
        EXPECT_EQ(m_Typed, soFar);
    }
}

TEST_F(InputBuffer, TellingTheWordsChangesNoByteOfThem) {
    const std::vector<std::string> given = {" a bc\n\n d", "ef \t", " \r\n", "g\n", "h"};
    TCBlocks blocks(given);
    host::TCInputBuffer buffer(blocks, Hooks(true));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}),
              " a bc\n\n def \t \r\ng\nh\n");
}

TEST_F(InputBuffer, ZeroBytesAndBytesAbove127AreOrdinary) {
    const std::string bytes("\xff\x00\x80 \xffz\n", 7);
    TCBlocks blocks({bytes});
    host::TCInputBuffer buffer(blocks, Hooks(false));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}), bytes);
}

} // namespace
