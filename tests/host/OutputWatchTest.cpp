#include "OutputWatch.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace {

using namespace std::chrono_literals;

// Long enough never to pass in a test that goes well.
constexpr auto kLong = 60s;

TEST(OutputWatch, FindsATextThatIsThereAlready) {
    host::TCOutputWatch watch;
    watch.Append("one two three");
    EXPECT_TRUE(watch.WaitFor("two", kLong));
}

TEST(OutputWatch, FindsATextThatComesInPieces) {
    host::TCOutputWatch watch;
    watch.Append("Command not imp");
    watch.Append("l");
    watch.Append("emented\n");
    EXPECT_TRUE(watch.WaitFor("not implemented", kLong));
}

TEST(OutputWatch, AWaitIsEndedByAnotherThreadsText) {
    host::TCOutputWatch watch;
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

TEST(OutputWatch, AMissIsToldWhenTheLimitHasPassed) {
    host::TCOutputWatch watch;
    watch.Append("something else");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(watch.WaitFor("needle", 20ms));
    EXPECT_GE(std::chrono::steady_clock::now() - before, 20ms);
}

TEST(OutputWatch, AFoundTextAndAllBeforeItAreUsedUp) {
    host::TCOutputWatch watch;
    watch.Append("first second first");
    EXPECT_TRUE(watch.WaitFor("second", kLong));
    EXPECT_TRUE(watch.WaitFor("first", kLong));
    EXPECT_FALSE(watch.WaitFor("first", 1ms));
}

TEST(OutputWatch, TextsInARowAreFoundInOneInsertion) {
    host::TCOutputWatch watch;
    watch.Append("abc");
    EXPECT_TRUE(watch.WaitFor("a", kLong));
    EXPECT_TRUE(watch.WaitFor("b", kLong));
    EXPECT_TRUE(watch.WaitFor("c", kLong));
}

TEST(OutputWatch, WhatWasPrintedBeforeAStepDoesNotCount) {
    host::TCOutputWatch watch;
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
    host::TCOutputWatch watch;
    std::thread ender([&] { watch.End(); });
    EXPECT_FALSE(watch.WaitFor("needle", 1h));
    ender.join();
}

TEST(OutputWatch, AfterTheEndWhatIsThereStillCounts) {
    host::TCOutputWatch watch;
    watch.Append("goodbye");
    watch.End();
    EXPECT_TRUE(watch.WaitFor("goodbye", 1h));
    EXPECT_FALSE(watch.WaitFor("goodbye", 1h));
}

} // namespace
