#include "ConsoleOutput.h"

#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "ScriptRun.h"

namespace {

// Counts what reaches it, and how often it is flushed.
class Sink : public std::stringbuf {
public:
    int m_flushes = 0;

protected:
    int sync() override {
        ++m_flushes;
        return 0;
    }
};

class OutputTee : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(Open(m_transcript)); }

    bool Open(host::Transcript& transcript) {
        std::string reason;
        return transcript.Open(m_file, {}, reason);
    }

    std::string Recorded() const {
        std::ifstream file(m_file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    std::string m_file =
        testing::TempDir() + "host-tee-" + testing::UnitTest::GetInstance()->current_test_info()->name();
    Sink m_sink;
    host::Transcript m_transcript;
    host::OutputWatch m_watch;
};

TEST_F(OutputTee, PassesEveryByteOnAndRecordsIt) {
    host::OutputTee tee(m_sink, &m_transcript, nullptr);
    std::ostream out(&tee);
    out << "menu" << 7 << '\n' << std::string("\xff\x00z", 3);
    const std::string expected("menu7\n\xff\x00z", 9);
    EXPECT_EQ(m_sink.str(), expected);
    EXPECT_EQ(Recorded(), expected) << "the record has to be in the file at once";
}

TEST_F(OutputTee, FlushesTheOutputBehindIt) {
    host::OutputTee tee(m_sink, nullptr, &m_watch);
    std::ostream out(&tee);
    out << "cmd> ";
    EXPECT_EQ(m_sink.m_flushes, 0);
    out << std::flush;
    EXPECT_EQ(m_sink.m_flushes, 1);
}

TEST_F(OutputTee, TypedTextIsRecordedAndNotPrinted) {
    host::OutputTee tee(m_sink, &m_transcript, nullptr);
    std::ostream out(&tee);
    out << "cmd> ";
    tee.RecordTyped("5\n");
    out << "five";
    EXPECT_EQ(m_sink.str(), "cmd> five");
    EXPECT_EQ(Recorded(), "cmd> 5\nfive");
}

TEST_F(OutputTee, TypedTextDoesNotMeetAnExpectation) {
    host::OutputTee tee(m_sink, &m_transcript, &m_watch);
    tee.RecordTyped("needle\n");
    m_watch.End();
    EXPECT_FALSE(m_watch.WaitFor("needle", std::chrono::hours(1)));
}

TEST_F(OutputTee, AFailedOutputIsSeenByTheStream) {
    class Refusing : public std::streambuf {
    } refusing;
    host::OutputTee tee(refusing, nullptr, &m_watch);
    std::ostream out(&tee);
    out << "text";
    EXPECT_TRUE(out.bad());
}

TEST_F(OutputTee, LinesOfTwoThreadsStayWholeAndInOneOrderEverywhere) {
    constexpr int kLines = 2000;
    host::OutputTee tee(m_sink, &m_transcript, &m_watch);
    const auto print = [&tee](const std::string& who) {
        for (int line = 0; line < kLines; ++line) {
            const std::string text = who + ' ' + std::to_string(line) + '\n';
            tee.sputn(text.data(), static_cast<std::streamsize>(text.size()));
            tee.pubsync();
        }
    };
    std::thread other(print, "right");
    print("left");
    other.join();

    EXPECT_EQ(Recorded(), m_sink.str());
    std::istringstream lines(m_sink.str());
    std::map<std::string, int> next;
    std::string who;
    int number = 0;
    while (lines >> who >> number) {
        ASSERT_EQ(number, next[who]++) << who;
    }
    EXPECT_EQ(next, (std::map<std::string, int>{{"left", kLines}, {"right", kLines}}));
}

TEST_F(OutputTee, WhatIsPrintedBeforeTheTranscriptIsOpenStandsAtItsStart) {
    host::Transcript later;
    later.Write("at load ");
    ASSERT_TRUE(Open(later));
    later.Write("and after");
    EXPECT_EQ(Recorded(), "at load and after");
}

} // namespace
