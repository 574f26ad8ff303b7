// Entering and leaving the test console, its main menu and the choices that open nothing.

#include <atomic>
#include <thread>

#include <glib.h>

#include "MainLoopWatch.h"
#include "TPMSScenario.h"

namespace {

class TestConsole : public TPMSScenario {};
class TestConsoleDeathTest : public TPMSScenario {
protected:
    // The words are the other process's.
    void TearDown() override {}
};

} // namespace

TEST_F(TestConsole, LeavesAfterOneUnsubscribeOneQuitAndOneJoin) {
    console.type("99");
    enter();
    EXPECT_EQ(console.dialogue(), kEntered + kMainMenu + cmd("99") + kLeft);
    EXPECT_EQ(MainLoopWatch::runsBegun(), 1);
    EXPECT_EQ(MainLoopWatch::runsEnded(), 1);
}

TEST_F(TestConsole, WritesItsMenuInOnePieceAndFlushesIt) {
    console.run([this] { menus.m_PrintMainMenu(); });
    EXPECT_EQ(console.whole(), kMainMenu + "{flush}");
    expectWrittenWhole(kMainMenu);
}

TEST_F(TestConsole, FlushesItsPrompt) {
    console.type("99");
    enter();
    EXPECT_EQ(console.whole(), kEntered + kMainMenu + "{flush}cmd> {flush}{typed 99}" + kLeft);
}

TEST_F(TestConsole, StartsItsThreadBeforeItSubscribes) {
    bool running = false;
    tv.runWithin("CreateSignalSubscriber", [&] { running = MainLoopWatch::waitForRuns(1); });
    console.type("99");
    enter();
    EXPECT_TRUE(running);
}

TEST_F(TestConsole, RunsItsLoopOnAThreadOfItsOwnUntilItIsLeft) {
    int endedBefore = -1;
    tv.runWithin("DestroySignalSubscriber", [&] { endedBefore = MainLoopWatch::runsEnded(); });
    console.type("9 99");
    enter();
    EXPECT_EQ(endedBefore, 0);
    EXPECT_NE(MainLoopWatch::runningThread(), std::this_thread::get_id());
}

TEST_F(TestConsole, IsLeftByEverySpellingOf99) {
    for (const std::string& word : spellingsOf("99")) {
        Console fresh;
        fresh.type(word).run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(), kEntered + kMainMenu + cmd(word) + kLeft) << word;
    }
}

TEST_F(TestConsole, ShowsItsMenuAgainAndNothingElseFor9) {
    EXPECT_EQ(visit("9", ""), "");
    for (const std::string& word : spellingsOf("9")) {
        Console fresh;
        fresh.type(word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(),
                  kEntered + kMainMenu + cmd(word) + kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(TestConsole, SaysThatItDoesNotKnowACommand) {
    for (const std::string word : {"0", "22", "98", "100", "-5", "-1", "-99", "50", "2147483647",
                                   "-2147483648", "0x10", "022", "+98", "100abc", "-0", "990"}) {
        Console fresh;
        fresh.type(word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.whole(), kEntered + kMainMenu + "{flush}cmd> {flush}{typed " + word +
                                     "}Command not recognized\n{flush}" + kMainMenu +
                                     "{flush}cmd> {flush}{typed 99}" + kLeft)
            << word;
    }
}

TEST_F(TestConsole, DoesNotKnowAnyNumberBetween22And98) {
    for (int number = 22; number <= 98; ++number)
        console.type(std::to_string(number));
    console.type("99");
    enter();
    std::string expected = kEntered + kMainMenu;
    for (int number = 22; number <= 98; ++number)
        expected += cmd(std::to_string(number)) + "Command not recognized\n" + kMainMenu;
    EXPECT_EQ(console.dialogue(), expected + cmd("99") + kLeft);
}

TEST_F(TestConsole, IgnoresWordsThatAreNoNumbers) {
    for (const std::string& word : kNoNumbers) {
        if (word == "-1")
            continue; // A number here.
        Console fresh;
        fresh.type(word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(),
                  kEntered + kMainMenu + cmd(word) + kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(TestConsole, RepeatsItsMenuForAsLongAsTheInputIsAtItsEnd) {
    console.endInput(5).type("99");
    enter();
    std::string repeats;
    for (int i = 0; i < 5; ++i)
        repeats += kMainMenu + "cmd> ";
    EXPECT_EQ(console.dialogue(),
              kEntered + kMainMenu + "cmd> {typed <end>}" + repeats + "{typed 99}" + kLeft);
}

TEST_F(TestConsole, RepeatsItsMenuForAsLongAsTheInputIsBroken) {
    console.breakInput(3).type("99");
    enter();
    std::string repeats;
    for (int i = 0; i < 3; ++i)
        repeats += kMainMenu + "cmd> ";
    EXPECT_EQ(console.dialogue(),
              kEntered + kMainMenu + "cmd> {typed <broken>}" + repeats + "{typed 99}" + kLeft);
}

// The word that was typed before stays in the console's string.
TEST_F(TestConsole, DoesNotTakeTheLastWordAgainAtTheEndOfInput) {
    console.type("50").endInput(2).type("99");
    enter();
    EXPECT_EQ(console.dialogue(), kEntered + kMainMenu + cmd("50") + "Command not recognized\n" +
                                      kMainMenu + "cmd> {typed <end>}" + kMainMenu + "cmd> " +
                                      kMainMenu + "cmd> {typed 99}" + kLeft);
}

TEST_F(TestConsole, CanBeEnteredAgain) {
    console.type("9 99 99");
    enter();
    enter();
    EXPECT_EQ(console.dialogue(), kEntered + kMainMenu + cmd("9") + kMainMenu + cmd("99") + kLeft +
                                      kEntered + kMainMenu + cmd("99") + kLeft);
    EXPECT_EQ(MainLoopWatch::runsBegun(), 2);
    EXPECT_EQ(MainLoopWatch::runsEnded(), 2);
}

// A quit that comes before the thread has reached its run would be lost, and the join never end.
TEST_F(TestConsole, NeverHangsOnLeaving) {
    constexpr int kTimes = 300;
    for (int i = 0; i < kTimes; ++i) {
        Console fresh;
        fresh.type("99").run([this] { menus.Enter(); });
        ASSERT_EQ(fresh.calls(), (std::vector<std::string>{
                                     "g_main_loop_new(NULL, FALSE)", "CreateSignalSubscriber",
                                     "DestroySignalSubscriber", "g_main_loop_quit", "join"}));
    }
    EXPECT_EQ(MainLoopWatch::runsEnded(), kTimes);
}

namespace {

// A thread of the program that iterates the default context, as a host's own might.
class ForeignLoop {
public:
    ForeignLoop() {
        g_idle_add(
            [](gpointer self) -> gboolean {
                static_cast<ForeignLoop*>(self)->m_iterating.store(true);
                static_cast<ForeignLoop*>(self)->m_iterating.notify_all();
                return G_SOURCE_REMOVE;
            },
            this);
        m_thread = std::thread([this] {
            while (!m_ended.load())
                g_main_context_iteration(nullptr, TRUE);
        });
        m_iterating.wait(false);
    }
    ~ForeignLoop() {
        m_ended.store(true);
        g_main_context_wakeup(nullptr);
        m_thread.join();
    }

private:
    std::atomic<bool> m_iterating{false};
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

} // namespace

TEST_F(TestConsole, IsLeftWhileAnotherThreadIteratesTheDefaultContext) {
    constexpr int kTimes = 100;
    {
        const ForeignLoop foreign;
        for (int i = 0; i < kTimes; ++i) {
            Console fresh;
            fresh.type("9 99").run([this] { menus.Enter(); });
            ASSERT_EQ(fresh.dialogue(),
                      kEntered + kMainMenu + cmd("9") + kMainMenu + cmd("99") + kLeft);
        }
    }
    EXPECT_EQ(MainLoopWatch::runsEnded(), kTimes);
}

// Its thread cannot be left behind.
TEST_F(TestConsoleDeathTest, EndsTheProcessWhenAnExceptionLeavesIt) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    tv.runWithin("AVControl.MuteVideo", [] { throw 1; });
    console.type("2 0 1 1");
    EXPECT_DEATH(enter(), "left by an exception, after:(.|\n)*AVControl.MuteVideo\\(1\\)");
}

TEST_F(TestConsole, BeginsWithoutASubscriberAndCallsNothing) {
    const TCDebugMenuTPMS another;
    EXPECT_EQ(console.dialogue(), "");
}
