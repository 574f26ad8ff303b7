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
    console.Type("99");
    Enter();
    EXPECT_EQ(console.Whole(), kEntered + kMainMenu + "{flush}cmd> {flush}<99>" + kLeft);
    EXPECT_TRUE(Console::WroteInOnePiece(screens::kTestConsole));
    EXPECT_EQ(MainLoopWatch::CountBegunRuns(), 1);
    EXPECT_EQ(MainLoopWatch::CountEndedRuns(), 1);
}

TEST_F(TestConsole, WritesItsMenuInOnePieceAndFlushesIt) {
    console.Run([this] { menus.m_PrintMainMenu(); });
    EXPECT_EQ(console.Whole(), kMainMenu + "{flush}");
    EXPECT_TRUE(Console::WroteInOnePiece(screens::kTestConsole));
}

TEST_F(TestConsole, StartsItsThreadBeforeItSubscribes) {
    bool running = false;
    tv.RunWithin("CreateSignalSubscriber", [&] { running = MainLoopWatch::WaitForRuns(1); });
    console.Type("99");
    Enter();
    EXPECT_TRUE(running);
}

TEST_F(TestConsole, RunsItsLoopOnAThreadOfItsOwnUntilItIsLeft) {
    int endedBefore = -1;
    tv.RunWithin("DestroySignalSubscriber", [&] { endedBefore = MainLoopWatch::CountEndedRuns(); });
    console.Type("9 99");
    Enter();
    EXPECT_EQ(endedBefore, 0);
    EXPECT_NE(MainLoopWatch::GetRunningThread(), std::this_thread::get_id());
}

TEST_F(TestConsole, IsLeftByEverySpellingOf99) {
    for (const std::string& word : SpellingsOf("99")) {
        console.Type(word);
        EXPECT_EQ(Enter(), kEntered + kMainMenu + "cmd> <" + word + ">" + kLeft);
    }
}

TEST_F(TestConsole, ShowsItsMenuAgainAndNothingElseFor9AndForWordsThatAreNoNumbers) {
    std::vector<std::string> words = SpellingsOf("9");
    words.insert(words.end(), kNoNumbers.begin(), kNoNumbers.end());
    for (const std::string& word : words) {
        if (word != "-1") { // A number here.
            EXPECT_EQ(Visit(word), "") << word;
        }
    }
}

TEST_F(TestConsole, SaysThatItDoesNotKnowANumber) {
    std::vector<std::string> words = {"0",    "100", "-5",  "-1",     "-99", "2147483647", "-2147483648",
                                      "0x10", "022", "+98", "100abc", "-0",  "990"};
    for (int number = 22; number <= 98; ++number)
        words.push_back(std::to_string(number));
    std::string expected = kEntered + kMainMenu;
    for (const std::string& word : words) {
        console.Type(word);
        expected += "{flush}cmd> {flush}<" + word + ">Command not recognized\n{flush}" + kMainMenu;
    }
    console.Type("99");
    Enter();
    EXPECT_EQ(console.Whole(), expected + "{flush}cmd> {flush}<99>" + kLeft);
}

// The word that was typed before stays in the console's string, and is not taken again.
TEST_F(TestConsole, RepeatsItsMenuForAsLongAsTheInputIsAtItsEndOrBroken) {
    console.EndInput(5).Type("50").BreakInput(3).Type("99");
    EXPECT_EQ(screens::Abbreviated(Enter(), {{kMainMenu + "cmd> ", "{menu}"}}),
              kEntered +
                  "{menu}<end of input>{menu}{menu}{menu}{menu}{menu}"
                  "<50>Command not recognized\n{menu}<broken input>{menu}{menu}{menu}<99>" +
                  kLeft);
}

TEST_F(TestConsole, CanBeEnteredAgain) {
    console.Type("9 99 99").Run([this] {
        menus.Enter();
        menus.Enter();
    });
    const std::string once = kMainMenu + "cmd> <99>" + kLeft;
    EXPECT_EQ(console.Dialogue(), kEntered + kMainMenu + "cmd> <9>" + once + kEntered + once);
    EXPECT_EQ(MainLoopWatch::CountBegunRuns(), 2);
    EXPECT_EQ(MainLoopWatch::CountEndedRuns(), 2);
}

// A quit that comes before the thread has reached its run would be lost, and the join never end.
TEST_F(TestConsole, NeverHangsOnLeaving) {
    constexpr int kTimes = 300;
    for (int i = 0; i < kTimes; ++i) {
        console.Type("99");
        ASSERT_EQ(Enter(), kEntered + kMainMenu + "cmd> <99>" + kLeft);
    }
    EXPECT_EQ(MainLoopWatch::CountEndedRuns(), kTimes);
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
            ASSERT_EQ(Visit("9"), "");
        }
    }
    EXPECT_EQ(MainLoopWatch::CountEndedRuns(), kTimes);
}

// Its thread cannot be left behind.
TEST_F(TestConsoleDeathTest, EndsTheProcessWhenAnExceptionLeavesIt) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    tv.RunWithin("AVControl.MuteVideo", [] { throw 1; });
    console.Type("2 0 1 1");
    EXPECT_DEATH(Enter(), "left by an exception, after:(.|\n)*AVControl.MuteVideo\\(1\\)");
}

TEST_F(TestConsole, BeginsWithoutASubscriberAndCallsNothing) {
    const TCDebugMenuTPMS another;
    EXPECT_EQ(console.Dialogue(), "");
}
