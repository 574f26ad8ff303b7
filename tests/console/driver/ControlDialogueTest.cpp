#include <gtest/gtest.h>

#include <zarn/DebugMenu.h>

#include "DriverTest.h"
#include "FakeCore.h"
#include "Screens.h"

using namespace pieces;
using FakeCore::Reply;

using ControlDialogue = DriverTest;

TEST_F(ControlDialogue, RelaysEachWordUntilExecuteAnswersZero) {
    FakeCore::answer("Start", Reply().value(1).text("Norvex> "));
    FakeCore::answer("Execute", Reply().value(1).text("items\n> "));
    FakeCore::answer("Execute", Reply().value(2).text("help\n> "));
    FakeCore::answer("Execute", Reply().value(0).text("never shown"));
    FakeCore::answer("Stop", Reply().value(1));
    EXPECT_EQ(run("1 items help 99 99"),
              entered + menu + typed("1") + start + "Norvex> {flush}" + typed("items") +
                  execute("items") + "{flush}items\n> {flush}" + typed("help") + execute("help") +
                  "{flush}help\n> {flush}" + typed("99") + execute("99") + stop + menu +
                  typed("99"));
}

TEST_F(ControlDialogue, Passes99ToTheProcessLikeAnyOtherWord) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(1).text("t"));
    FakeCore::answer("Execute", Reply().value(1).text("u"));
    FakeCore::answer("Execute", Reply().value(0));
    EXPECT_EQ(run("1 99 99 quit 99"),
              entered + menu + typed("1") + start + "s{flush}" + typed("99") + execute("99") +
                  "{flush}t{flush}" + typed("99") + execute("99") + "{flush}u{flush}" +
                  typed("quit") + execute("quit") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ProcessMenuNumbersMeanNothingInIt) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(1).text("t"));
    FakeCore::answer("Execute", Reply().value(0));
    EXPECT_EQ(run("1 4 3 99"), entered + menu + typed("1") + start + "s{flush}" + typed("4") +
                                   execute("4") + "{flush}t{flush}" + typed("3") + execute("3") +
                                   stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ScreenIsPrintedAsItStands) {
    FakeCore::answer("Start", Reply().value(1).text("a%d%s\n\n\tb"));
    FakeCore::answer("Execute", Reply().value(-1));
    EXPECT_EQ(run("1 x 99"), entered + menu + typed("1") + start + "a%d%s\n\n\tb{flush}" +
                                 typed("x") + execute("x") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ScreenWithAZeroByteIsPrintedWhole) {
    FakeCore::answer("Start", Reply().value(1).text(std::string("a\0b", 3)));
    EXPECT_EQ(run("1 x 99"), entered + menu + typed("1") + start + std::string("a\0b", 3) +
                                 "{flush}" + typed("x") + execute("x") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, NegativeResultOfExecuteEndsItToo) {
    for (const int status : {-1, -1000, 0}) {
        FakeCore::reset();
        FakeCore::answer("Start", Reply().value(1).text("s"));
        FakeCore::answer("Execute", Reply().value(status).text("t"));
        Console again;
        again.type("1 x 99").run(zarn_startmaindebug);
        EXPECT_EQ(again.transcript(), "DebugUtil\n" + screens::processMenu + "\ncmd> s" +
                                          screens::processMenu + "\ncmd> ")
            << status;
        EXPECT_EQ(again.calls().back(),
                  "Run(connection, com.holvi.IDebugPrintControl, Stop, 2, false; out value 4 = "
                  "ffffffff)")
            << status;
    }
}

TEST_F(ControlDialogue, FailedExchangeOfExecuteEndsIt) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(1).text("t").failed());
    EXPECT_EQ(run("1 x 99"), entered + menu + typed("1") + start + "s{flush}" + typed("x") +
                                 execute("x") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ResultOfStopIsIgnored) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(0));
    FakeCore::answer("Stop", Reply().value(-5).failed());
    EXPECT_EQ(run("1 x 99"), entered + menu + typed("1") + start + "s{flush}" + typed("x") +
                                 execute("x") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, RefusedStartIsTwoLines) {
    for (const int status : {0, -1, -2147483647}) {
        FakeCore::reset();
        FakeCore::answer("Start", Reply().value(status).text("never shown"));
        Console again;
        again.type("1 99").run(zarn_startmaindebug);
        EXPECT_EQ(again.transcript(), "DebugUtil\n" + screens::processMenu +
                                          "\ncmd> Failed to start selected[1] debug print control\n"
                                          "Command not implemented\n" +
                                          screens::processMenu + "\ncmd> ")
            << status;
    }
}

TEST_F(ControlDialogue, RefusedStartIsNotStopped) {
    FakeCore::answer("Start", Reply().value(0).text("never shown"));
    EXPECT_EQ(run("1 99"), entered + menu + typed("1") + start +
                               "Failed to start selected[1] debug print control\n{flush}" +
                               notImplemented + menu + typed("99"));
}

TEST_F(ControlDialogue, FailedExchangeOfStartIsARefusal) {
    FakeCore::answer("Start", Reply().value(1).text("s").failed());
    EXPECT_EQ(run("1 99"), entered + menu + typed("1") + start +
                               "Failed to start selected[1] debug print control\n{flush}" +
                               notImplemented + menu + typed("99"));
}

TEST_F(ControlDialogue, EmptyScreenInAReplyShowsTheLastOneAgain) {
    FakeCore::answer("Start", Reply().value(1).text("first"));
    FakeCore::answer("Execute", Reply().value(1).text(""));
    FakeCore::answer("Execute", Reply().value(0));
    EXPECT_EQ(run("1 a b 99"), entered + menu + typed("1") + start + "first{flush}" + typed("a") +
                                   execute("a") + "{flush}first{flush}" + typed("b") +
                                   execute("b") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ScreenOutlivesTheDialogue) {
    FakeCore::answer("Start", Reply().value(1).text("first"));
    FakeCore::answer("Start", Reply().value(1).text(""));
    FakeCore::answer("Execute", Reply().value(0).text("second"));
    FakeCore::answer("Execute", Reply().value(0).text(""));
    EXPECT_EQ(run("1 a 1 b 99"), entered + menu + typed("1") + start + "first{flush}" + typed("a") +
                                     execute("a") + stop + menu + typed("1") + start +
                                     "second{flush}" + typed("b") + execute("b") + stop + menu +
                                     typed("99"));
}

TEST_F(ControlDialogue, ChosenAgainStartsTheSameControlAgain) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(0));
    const std::string once =
        typed("1") + start + "s{flush}" + typed("x") + execute("x") + stop + menu;
    EXPECT_EQ(run("1 x 1 x 99"), entered + menu + once + once + typed("99"));
}

TEST_F(ControlDialogue, FollowsTheProviderMenuWithoutATrace) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(0));
    EXPECT_EQ(run("4 99 1 99 99"), entered + menu + typed("4") + screens::providerListOff +
                                       "{flush}" + typed("99") + menu + typed("1") + start +
                                       "s{flush}" + typed("99") + execute("99") + stop + menu +
                                       typed("99"));
}

TEST_F(ControlDialogue, ProviderMenuAfterADialogueIsNotSentToTheControl) {
    FakeCore::answer("Start", Reply().value(1).text("s"));
    FakeCore::answer("Execute", Reply().value(0));
    EXPECT_EQ(run("1 x 4 5 99 99"), entered + menu + typed("1") + start + "s{flush}" + typed("x") +
                                        execute("x") + stop + menu + typed("4") +
                                        screens::providerListOff + "{flush}" + typed("5") +
                                        "{flush}" + typed("99") + menu + typed("99"));
}

TEST_F(ControlDialogue, ScreenRepeatsAtTheEndOfInput) {
    FakeCore::answer("Start", Reply().value(1).text("screen> "));
    FakeCore::answer("Execute", Reply().value(0));
    console.type("1").endInput(3, "screen> ").type("x 99");
    EXPECT_EQ(run(), entered + menu + typed("1") + start + "screen> {flush}" + typed("<end>") +
                         "screen> {flush}screen> {flush}screen> {flush}" + typed("x") +
                         execute("x") + stop + menu + typed("99"));
}

TEST_F(ControlDialogue, ScreenRepeatsWhileTheStreamIsBad) {
    FakeCore::answer("Start", Reply().value(1).text("screen> "));
    FakeCore::answer("Execute", Reply().value(0));
    console.type("1").breakInput(2, "screen> ").type("x 99");
    EXPECT_EQ(run(), entered + menu + typed("1") + start + "screen> {flush}" + typed("<broken>") +
                         "screen> {flush}screen> {flush}" + typed("x") + execute("x") + stop +
                         menu + typed("99"));
}
