#include "OutputTee.h"

#include "OutputWatch.h"
#include "Transcript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <thread>

namespace {

// Counts what reaches it, and how often it is flushed.
class TCSink : public std::stringbuf {
public:
    int m_Flushes = 0;

protected:
    int sync() override {
        ++m_Flushes;
        return 0;
    }
};

class OutputTee : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_Transcript.Open(m_File)); }

    std::string Recorded() const {
        std::ifstream file(m_File, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    std::string m_File = testing::TempDir() + "host-tee-" +
                         testing::UnitTest::GetInstance()->current_test_info()->name();
    TCSink m_Sink;
    host::TCTranscript m_Transcript;
    host::TCOutputWatch m_Watch;
};

TEST_F(OutputTee, PassesEveryByteOnAndRecordsIt) {
    host::TCOutputTee tee(m_Sink, &m_Transcript, nullptr);
    std::ostream out(&tee);
    out << "menu" << 7 << '\n' << std::string("\xff\x00z", 3);
    const std::string expected("menu7\n\xff\x00z", 9);
    EXPECT_EQ(m_Sink.str(), expected);
    EXPECT_EQ(Recorded(), expected) << "the record has to be in the file at once";
}

TEST_F(OutputTee, FlushesWhatItStandsInFrontOf) {
    host::TCOutputTee tee(m_Sink, nullptr, &m_Watch);
    std::ostream out(&tee);
    out << "cmd> ";
    EXPECT_EQ(m_Sink.m_Flushes, 0);
    out << std::flush;
    EXPECT_EQ(m_Sink.m_Flushes, 1);
}

TEST_F(OutputTee, TypedTextIsRecordedAndNotPrinted) {
    host::TCOutputTee tee(m_Sink, &m_Transcript, nullptr);
    std::ostream out(&tee);
    out << "cmd> ";
    tee.RecordTyped("5\n");
    out << "five";
    EXPECT_EQ(m_Sink.str(), "cmd> five");
    EXPECT_EQ(Recorded(), "cmd> 5\nfive");
}

TEST_F(OutputTee, TypedTextDoesNotMeetAnExpectation) {
    host::TCOutputTee tee(m_Sink, &m_Transcript, &m_Watch);
    tee.RecordTyped("needle\n");
    m_Watch.End();
    EXPECT_FALSE(m_Watch.WaitFor("needle", std::chrono::hours(1)));
}

TEST_F(OutputTee, AFailedOutputIsSeenByTheStream) {
    class TCRefusing : public std::streambuf {
    } refusing;
    host::TCOutputTee tee(refusing, nullptr, &m_Watch);
    std::ostream out(&tee);
    out << "text";
    EXPECT_TRUE(out.bad());
}

TEST_F(OutputTee, LinesOfTwoThreadsStayWholeAndInOneOrderEverywhere) {
    constexpr int kLines = 2000;
    host::TCOutputTee tee(m_Sink, &m_Transcript, &m_Watch);
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

    EXPECT_EQ(Recorded(), m_Sink.str());
    std::istringstream lines(m_Sink.str());
    std::map<std::string, int> next;
    std::string who;
    int number = 0;
    while (lines >> who >> number) {
        ASSERT_EQ(number, next[who]++) << who;
    }
    EXPECT_EQ(next, (std::map<std::string, int>{{"left", kLines}, {"right", kLines}}));
}

} // namespace
