#include <gtest/gtest.h>

#include "DriverTest.h"
#include "FakeConnection.h"

using FakeConnection::Answer;
using FakeConnection::Reply;

using ControlDialogue = DriverTest;

TEST_F(ControlDialogue, RelaysEachWordUntilExecuteAnswersZero) {
    Answer("Start", Reply().Value(1).Text("Norvex> "));
    Answer("Execute", Reply().Value(1).Text("items\n> "));
    Answer("Execute", Reply().Value(2).Text("help\n> "));
    Answer("Execute", Reply().Value(0).Text("never shown"));
    Answer("Stop", Reply().Value(1));
    EXPECT_EQ(Run("1 items help 99 99"), "{entered}{menu}<1>{Start}Norvex> {flush}<items>" + Execute("items") +
                                             "{flush}items\n> {flush}<help>" + Execute("help") +
                                             "{flush}help\n> {flush}<99>" + Execute("99") + "{Stop}{menu}<99>");
}

TEST_F(ControlDialogue, Passes99AndTheProcessMenusNumbersToTheProcessLikeAnyOtherWord) {
    Answer("Start", Reply().Value(1).Text("s"));
    Answer("Execute", Reply().Value(1).Text("t"));
    Answer("Execute", Reply().Value(1).Text("u"));
    Answer("Execute", Reply().Value(0));
    EXPECT_EQ(Run("1 99 4 3 99"), "{entered}{menu}<1>{Start}s{flush}<99>" + Execute("99") + "{flush}t{flush}<4>" +
                                      Execute("4") + "{flush}u{flush}<3>" + Execute("3") + "{Stop}{menu}<99>");
}

TEST_F(ControlDialogue, ScreenIsPrintedAsItStands) {
    const std::string screen("a%d%s\n\n\tb\0c", 11);
    Answer("Start", Reply().Value(1).Text(screen));
    Answer("Execute", Reply().Value(-1));
    EXPECT_EQ(Run("1 x 99"), "{entered}{menu}<1>{Start}" + screen + "{flush}<x>" + Execute("x") + "{Stop}{menu}<99>");
}

TEST_F(ControlDialogue, IsEndedByEveryOtherResultOfExecute) {
    const Reply replies[] = {Reply().Value(0).Text("never shown"), Reply().Value(-1).Text("t"),
                             Reply().Value(-1000).Text("t"), Reply().Value(1).Text("t").Failed()};
    for (const Reply& reply : replies) {
        Timeline::Now().Clear();
        FakeConnection::Reset();
        Answer("Start", Reply().Value(1).Text("s"));
        Answer("Execute", reply);
        EXPECT_EQ(Run("1 x 99"), "{entered}{menu}<1>{Start}s{flush}<x>" + Execute("x") + "{Stop}{menu}<99>");
    }
}

TEST_F(ControlDialogue, ResultOfStopIsIgnored) {
    Answer("Start", Reply().Value(1).Text("s"));
    Answer("Execute", Reply().Value(0));
    for (const Reply& reply : {Reply().Value(-5), Reply().Failed()}) {
        Timeline::Now().Clear();
        Answer("Stop", reply);
        EXPECT_EQ(Run("1 x 99"), "{entered}{menu}<1>{Start}s{flush}<x>" + Execute("x") + "{Stop}{menu}<99>");
    }
}

TEST_F(ControlDialogue, RefusedStartIsTwoLinesAndIsNotStopped) {
    const Reply replies[] = {Reply().Value(0).Text("never shown"), Reply().Value(-1).Text("t"),
                             Reply().Value(-2147483647).Text("t"), Reply().Value(1).Text("t").Failed()};
    for (const Reply& reply : replies) {
        Timeline::Now().Clear();
        FakeConnection::Reset();
        Answer("Start", reply);
        EXPECT_EQ(Run("1 99"), "{entered}{menu}<1>{Start}Failed to start selected[1] debug print "
                               "control\n{flush}{not implemented}{menu}<99>");
    }
}

TEST_F(ControlDialogue, EmptyScreenInAReplyShowsTheLastOneAgain) {
    Answer("Start", Reply().Value(1).Text("first"));
    Answer("Execute", Reply().Value(1).Text(""));
    Answer("Execute", Reply().Value(0));
    EXPECT_EQ(Run("1 a b 99"), "{entered}{menu}<1>{Start}first{flush}<a>" + Execute("a") + "{flush}first{flush}<b>" +
                                   Execute("b") + "{Stop}{menu}<99>");
}

TEST_F(ControlDialogue, ScreenOutlivesTheDialogue) {
    Answer("Start", Reply().Value(1).Text("first"));
    Answer("Start", Reply().Value(1).Text(""));
    Answer("Execute", Reply().Value(0).Text("second"));
    Answer("Execute", Reply().Value(0).Text(""));
    EXPECT_EQ(Run("1 a 1 b 99"), "{entered}{menu}<1>{Start}first{flush}<a>" + Execute("a") +
                                     "{Stop}{menu}<1>{Start}second{flush}<b>" + Execute("b") + "{Stop}{menu}<99>");
}

TEST_F(ControlDialogue, ChosenAgainStartsTheSameControlAgain) {
    Answer("Start", Reply().Value(1).Text("s"));
    Answer("Execute", Reply().Value(0));
    const std::string once = "<1>{Start}s{flush}<x>" + Execute("x") + "{Stop}{menu}";
    EXPECT_EQ(Run("1 x 1 x 99"), "{entered}{menu}" + once + once + "<99>");
}

TEST_F(ControlDialogue, LeavesNoTraceInTheProviderMenuNorThatOneInIt) {
    Answer("Start", Reply().Value(1).Text("s"));
    Answer("Execute", Reply().Value(0));
    EXPECT_EQ(Run("4 99 1 x 4 5 99 99"), "{entered}{menu}<4>{list off}<99>{menu}<1>{Start}s{flush}"
                                         "<x>" +
                                             Execute("x") + "{Stop}{menu}<4>{list off}<5>{flush}<99>{menu}<99>");
}

TEST_F(ControlDialogue, ScreenRepeatsWhileTheInputIsAtItsEndOrBroken) {
    Answer("Start", Reply().Value(1).Text("screen> "));
    Answer("Execute", Reply().Value(0));
    console.Type("1").EndInput(3, "screen> ").Type("x 1").BreakInput(2, "screen> ").Type("y 99");
    EXPECT_EQ(Run(), "{entered}{menu}<1>{Start}screen> {flush}<end of input>"
                     "screen> {flush}screen> {flush}screen> {flush}<x>" +
                         Execute("x") +
                         "{Stop}{menu}<1>{Start}screen> {flush}<broken input>"
                         "screen> {flush}screen> {flush}<y>" +
                         Execute("y") + "{Stop}{menu}<99>");
}
