#include "ScriptRun.h"

#include "OutputWatch.h"
#include "ScriptInput.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <optional>

namespace {

using namespace std::chrono_literals;

// The test's thread is the console's: it asks for lines and prints.
class ScriptRun : public testing::Test {
protected:
    void Start(std::string_view script) {
        host::TSScriptError error{};
        m_Run.emplace(host::ParseScript(script, error).value(), m_Input, m_Watch,
                      [this](const host::TSStep& step, const host::TSExpectStep& expect) {
                          m_Missed.set_value(std::to_string(step.m_LineNumber) + ' ' +
                                             expect.m_Text);
                      });
        m_Run->Start();
    }

    std::string Ask() { return std::string(m_Input.Next()); }

    // The script did not miss anything so far.
    bool NothingMissed() { return m_MissedText.wait_for(0s) == std::future_status::timeout; }

    host::TCScriptInput m_Input;
    host::TCOutputWatch m_Watch;
    std::promise<std::string> m_Missed;
    std::future<std::string> m_MissedText = m_Missed.get_future();
    std::optional<host::TCScriptRun> m_Run;
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
        m_Watch.Append("now ready");
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
    m_Watch.Append("ready");
    EXPECT_EQ(Ask(), "2\n");
    EXPECT_EQ(m_MissedText.get(), "3 ready");
}

TEST_F(ScriptRun, AMissIsToldThoughTheConsoleNeverAsksAgain) {
    Start("1\nexpect ready within 0.02\n");
    EXPECT_EQ(Ask(), "1\n");
    EXPECT_EQ(m_MissedText.get(), "2 ready");
}

TEST_F(ScriptRun, TheFirstExpectationSeesWhatWasPrintedBeforeTheFirstLine) {
    m_Watch.Append("Welcome");
    Start("expect Welcome\n99\n");
    EXPECT_EQ(Ask(), "99\n");
}

TEST_F(ScriptRun, AfterTheConsoleHasReturnedItsOutputIsStillJudged) {
    Start("99\nexpect goodbye within 3600\nexpect again within 3600\n");
    EXPECT_EQ(Ask(), "99\n");
    m_Watch.Append("goodbye");
    m_Run->Finish();
    EXPECT_EQ(m_MissedText.get(), "3 again");
}

TEST_F(ScriptRun, LinesThatNobodyReadsAnyMorePass) {
    Start("99\n99\n99\n");
    EXPECT_EQ(Ask(), "99\n");
    m_Run->Finish();
    EXPECT_TRUE(NothingMissed());
}

TEST_F(ScriptRun, WhatIsExpectedOfALineThatNobodyReadIsMissed) {
    Start("99\n5\nexpect goodbye within 3600\n");
    EXPECT_EQ(Ask(), "99\n");
    m_Watch.Append("goodbye");
    m_Run->Finish();
    EXPECT_EQ(m_MissedText.get(), "3 goodbye");
}

} // namespace
