#include "ConsoleInput.h"

#include <istream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

class DescriptorInput : public testing::Test {
protected:
    void SetUp() override {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        m_read = ends[0];
        m_write = ends[1];
        m_input = std::make_unique<host::DescriptorInput>(m_read);
    }

    void TearDown() override {
        ::close(m_read);
        CloseWriter();
    }

    void Write(std::string_view text) {
        ASSERT_EQ(::write(m_write, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void CloseWriter() {
        if (m_write != -1) {
            ::close(m_write);
            m_write = -1;
        }
    }

    int m_read = -1;
    int m_write = -1;
    std::unique_ptr<host::DescriptorInput> m_input;
};

TEST_F(DescriptorInput, GivesWhatIsThereWithoutWaitingForMore) {
    Write("5\n");
    EXPECT_EQ(m_input->Next(), "5\n");
    Write("1 2 3");
    EXPECT_EQ(m_input->Next(), "1 2 3");
}

TEST_F(DescriptorInput, IsEmptyAtTheEnd) {
    Write("5");
    CloseWriter();
    EXPECT_EQ(m_input->Next(), "5");
    EXPECT_EQ(m_input->Next(), "");
}

TEST_F(DescriptorInput, AnErrorIsTheEnd) {
    host::DescriptorInput closed(-1);
    EXPECT_EQ(closed.Next(), "");
}

TEST_F(DescriptorInput, WaitsForANonBlockingDescriptor) {
    ASSERT_EQ(::fcntl(m_read, F_SETFL, O_NONBLOCK), 0);
    std::thread writer([this] { Write("late\n"); });
    EXPECT_EQ(m_input->Next(), "late\n");
    writer.join();
}

// Returns the given blocks, one per call.
class Blocks : public host::InputSource {
public:
    explicit Blocks(std::vector<std::string> blocks) : m_blocks(std::move(blocks)) {}

    std::string_view Next() override {
        return m_asked < m_blocks.size() ? std::string_view(m_blocks[m_asked++]) : (++m_asked, std::string_view());
    }

    std::size_t Asked() const { return m_asked; }

private:
    std::vector<std::string> m_blocks;
    std::size_t m_asked = 0;
};

class InputBuffer : public testing::Test {
protected:
    host::InputBuffer::Hooks Hooks(bool typed) {
        host::InputBuffer::Hooks hooks;
        hooks.beforeWait = [this] { ++m_waits; };
        hooks.atEnd = [this] { ++m_ends; };
        if (typed) {
            hooks.typed = [this](std::string_view text) { m_typed += text; };
        }
        return hooks;
    }

    int m_waits = 0;
    int m_ends = 0;
    std::string m_typed;
};

TEST_F(InputBuffer, HandsOutTheWordsOfABlockWithoutAskingAgain) {
    Blocks blocks({"one two\nthree\n"});
    host::InputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    for (const char* expected : {"one", "two", "three"}) {
        std::string word;
        in >> word;
        EXPECT_EQ(word, expected);
    }
    EXPECT_EQ(blocks.Asked(), 1U);
    EXPECT_EQ(m_waits, 1);
    EXPECT_EQ(m_ends, 0);
}

TEST_F(InputBuffer, TheLastWordCountsWithoutALineEndAndBeforeTheEnd) {
    Blocks blocks({"one\n9", "9"});
    host::InputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    std::string word;
    in >> word >> word;
    EXPECT_EQ(word, "99");
    EXPECT_TRUE(in.good());
    EXPECT_EQ(m_ends, 0) << "the end came before the last word had its effect";
    in >> word;
    EXPECT_EQ(m_ends, 1);
}

TEST_F(InputBuffer, ASourceThatHasEndedIsNotAskedAgain) {
    Blocks blocks({"99"});
    host::InputBuffer buffer(blocks, Hooks(false));
    std::istream in(&buffer);
    std::string word;
    in >> word >> word;
    EXPECT_EQ(blocks.Asked(), 2U);
    EXPECT_EQ(m_waits, 2);
}

TEST_F(InputBuffer, ALineEndIsAddedOnlyWhereItIsMissing) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"a\n", "a\n"}, {"a", "a\n"}, {"a ", "a \n"}, {"", ""}};
    for (const auto& [given, read] : texts) {
        Blocks blocks({given});
        host::InputBuffer buffer(blocks, Hooks(false));
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}), read) << given;
    }
}

TEST_F(InputBuffer, AWordOf200000BytesArrivesWhole) {
    const std::string part(50000, 'x');
    Blocks blocks({part, part, part, part});
    host::InputBuffer buffer(blocks, Hooks(true));
    std::istream in(&buffer);
    std::string word;
    in >> word;
    EXPECT_EQ(word, part + part + part + part);
    EXPECT_EQ(m_typed, word + "\n");
}

TEST_F(InputBuffer, TypedWordsAreReportedOneByOneAsTheyAreRead) {
    Blocks blocks({" 5  1\n\n", "9", "9\t8 ", "7"});
    host::InputBuffer buffer(blocks, Hooks(true));
    std::istream in(&buffer);
    std::string word;
    const std::vector<std::string> reported = {"5\n", "5\n1\n", "5\n1\n99\n", "5\n1\n99\n8\n", "5\n1\n99\n8\n7\n"};
    for (const std::string& soFar : reported) {
        in >> word;
        EXPECT_EQ(m_typed, soFar);
    }
}

TEST_F(InputBuffer, ReportingTheWordsChangesNoByte) {
    const std::vector<std::string> given = {" a bc\n\n d", "ef \t", " \r\n", "g\n", "h"};
    Blocks blocks(given);
    host::InputBuffer buffer(blocks, Hooks(true));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}), " a bc\n\n def \t \r\ng\nh\n");
}

TEST_F(InputBuffer, ZeroBytesAndBytesAbove127AreOrdinary) {
    const std::string bytes("\xff\x00\x80 \xffz\n", 7);
    Blocks blocks({bytes});
    host::InputBuffer buffer(blocks, Hooks(false));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(&buffer), {}), bytes);
}

} // namespace
