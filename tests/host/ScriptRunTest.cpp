#include "ScriptRun.h"

#include <atomic>
#include <future>
#include <optional>
#include <thread>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

// Never reached in a test that passes.
constexpr auto kLong = 60s;

TEST(OutputWatch, FindsATextThatIsThereAlready) {
    host::OutputWatch watch;
    watch.Append("one two three");
    EXPECT_TRUE(watch.WaitFor("two", kLong));
}

TEST(OutputWatch, FindsATextThatComesInPieces) {
    host::OutputWatch watch;
    watch.Append("Command not imp");
    watch.Append("l");
    watch.Append("emented\n");
    EXPECT_TRUE(watch.WaitFor("not implemented", kLong));
}

TEST(OutputWatch, AWaitIsEndedByAnotherThreadsText) {
    host::OutputWatch watch;
    watch.Append("aaa");
    std::promise<void> waiting;
    std::thread printer([&] {
        waiting.get_future().wait();
        for (const char* piece : {"aa", "ab", "noise", "ab", "c"}) {
            watch.Append(piece);
        }
    });
    waiting.set_value();
    EXPECT_TRUE(watch.WaitFor("aabnoiseabc", kLong));
    printer.join();
}

TEST(OutputWatch, AMissIsReportedOnTimeout) {
    host::OutputWatch watch;
    watch.Append("something else");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(watch.WaitFor("needle", 20ms));
    EXPECT_GE(std::chrono::steady_clock::now() - before, 20ms);
}

TEST(OutputWatch, AMissedTextIsLookedForNoLonger) {
    host::OutputWatch watch;
    EXPECT_FALSE(watch.WaitFor("no", std::chrono::milliseconds(0)));
    watch.Append("yes");
    EXPECT_TRUE(watch.WaitFor("yes", std::chrono::milliseconds(0)));
}

TEST(OutputWatch, AFoundTextAndAllBeforeItAreUsedUp) {
    host::OutputWatch watch;
    watch.Append("first second first");
    EXPECT_TRUE(watch.WaitFor("second", kLong));
    EXPECT_TRUE(watch.WaitFor("first", kLong));
    EXPECT_FALSE(watch.WaitFor("first", 1ms));
}

TEST(OutputWatch, TextsInARowAreFoundInOneInsertion) {
    host::OutputWatch watch;
    watch.Append("abc");
    EXPECT_TRUE(watch.WaitFor("a", kLong));
    EXPECT_TRUE(watch.WaitFor("b", kLong));
    EXPECT_TRUE(watch.WaitFor("c", kLong));
}

TEST(OutputWatch, WhatWasPrintedBeforeAStepDoesNotCount) {
    host::OutputWatch watch;
    watch.Append("old");
    watch.Forget();
    watch.Append("old too");
    watch.Resume();
    watch.Append("new");
    EXPECT_TRUE(watch.WaitFor("new", kLong)) << "what came after the step counts";

    watch.Append("old");
    watch.Forget();
    watch.Append("old too");
    watch.Resume();
    EXPECT_FALSE(watch.WaitFor("old", 1ms));
}

TEST(OutputWatch, TheEndOfTheOutputEndsAWait) {
    host::OutputWatch watch;
    std::thread ender([&] { watch.End(); });
    EXPECT_FALSE(watch.WaitFor("needle", 1h));
    ender.join();
}

TEST(OutputWatch, AfterTheEndEarlierOutputStillCounts) {
    host::OutputWatch watch;
    watch.Append("goodbye");
    watch.End();
    EXPECT_TRUE(watch.WaitFor("goodbye", 1h));
    EXPECT_FALSE(watch.WaitFor("goodbye", 1h));
}

// The test's thread acts as the console's: it asks for lines and prints.
class ScriptRun : public testing::Test {
protected:
    void Start(std::string_view script) {
        host::ScriptError error{};
        m_run.emplace(host::ParseScript(script, error).value(), m_input, m_watch,
                      [this](const host::Step& step, const host::ExpectStep& expect) {
                          m_missed.set_value(std::to_string(step.lineNumber) + ' ' + expect.text);
                      });
        m_run->Start();
    }

    std::string Ask() { return std::string(m_input.Next()); }

    // No expectation was missed so far.
    bool NothingMissed() { return m_missedText.wait_for(0s) == std::future_status::timeout; }

    host::ScriptInput m_input;
    host::OutputWatch m_watch;
    std::promise<std::string> m_missed;
    std::future<std::string> m_missedText = m_missed.get_future();
    std::optional<host::ScriptRun> m_run;
};

TEST_F(ScriptRun, GivesALineEachTimeTheConsoleAsksAndThenNone) {
    Start("5 1\n99\n");
    EXPECT_EQ(Ask(), "5 1\n");
    EXPECT_EQ(Ask(), "99\n");
    EXPECT_EQ(Ask(), "");
    EXPECT_EQ(Ask(), "");
}

TEST_F(ScriptRun, HoldsTheNextLineUntilTheTextHasCome) {
    Start("1\nexpect ready\n2\n");
    EXPECT_EQ(Ask(), "1\n");
    std::atomic<bool> printed = false;
    std::thread printer([&] {
        printed = true;
        m_watch.Append("now ready");
    });
    EXPECT_EQ(Ask(), "2\n");
    EXPECT_TRUE(printed) << "the line came before the text that it waits for";
    printer.join();
    EXPECT_EQ(Ask(), "");
    EXPECT_TRUE(NothingMissed());
}

TEST_F(ScriptRun, ATextFromBeforeTheLastLineDoesNotCount) {
    Start("1\n2\nexpect ready within 0.02\n3\n");
    EXPECT_EQ(Ask(), "1\n");
    m_watch.Append("ready");
    EXPECT_EQ(Ask(), "2\n");
    EXPECT_EQ(m_missedText.get(), "3 ready");
}

TEST_F(ScriptRun, AMissIsReportedEvenIfTheConsoleNeverAsksAgain) {
    Start("1\nexpect ready within 0.02\n");
    EXPECT_EQ(Ask(), "1\n");
    EXPECT_EQ(m_missedText.get(), "2 ready");
}

TEST_F(ScriptRun, TheFirstExpectationSeesWhatWasPrintedBeforeTheFirstLine) {
    m_watch.Append("Welcome");
    Start("expect Welcome\n99\n");
    EXPECT_EQ(Ask(), "99\n");
}

TEST_F(ScriptRun, AfterTheConsoleHasReturnedItsOutputIsStillChecked) {
    Start("99\nexpect goodbye within 3600\nexpect again within 3600\n");
    EXPECT_EQ(Ask(), "99\n");
    m_watch.Append("goodbye");
    m_run->Finish();
    EXPECT_EQ(m_missedText.get(), "3 again");
}

TEST_F(ScriptRun, LinesThatNobodyReadsAreSkipped) {
    Start("99\n99\n99\n");
    EXPECT_EQ(Ask(), "99\n");
    m_run->Finish();
    EXPECT_TRUE(NothingMissed());
}

TEST_F(ScriptRun, WhatIsExpectedOfALineThatNobodyReadIsMissed) {
    Start("99\n5\nexpect goodbye within 3600\n");
    EXPECT_EQ(Ask(), "99\n");
    m_watch.Append("goodbye");
    m_run->Finish();
    EXPECT_EQ(m_missedText.get(), "3 goodbye");
}

} // namespace
