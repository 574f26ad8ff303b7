#include <optional>

#include <gtest/gtest.h>
#include <zarn/DebugMenu.h>

#include "CoreWatch.h"
#include "DebugMenu.h"
#include "DriverTest.h"
#include "FakeConnection.h"

using FakeConnection::Reply;

using ProcessMenu = DriverTest;

namespace {

// What the media log menu answers instead of running; without it, it runs.
std::optional<int> mediaMenuResult;

const std::string kOpened = "{TCDebugMenuUtility::OpenLibrary(/usr/lib64/liblumo-debugmenu.so, "
                            "lumo_subdebugmenu)}";
const std::string kFailedToStart =
    "{Start}Failed to start selected[1] debug print control\n{flush}{not implemented}{menu}";

} // namespace

// The linker's names for calls of GstPluginDebugFunction and for the function itself.
extern "C" int RealMediaMenu() __asm__("__real__Z22GstPluginDebugFunctionv");
extern "C" int WrappedMediaMenu() __asm__("__wrap__Z22GstPluginDebugFunctionv");

int WrappedMediaMenu() {
    if (!mediaMenuResult)
        return RealMediaMenu();
    Timeline::Now().Call("GstPluginDebugFunction");
    return *mediaMenuResult;
}

TEST_F(ProcessMenu, IsWrittenInOnePieceWithItsPromptAndLeftWith99) {
    EXPECT_EQ(Run("99"), "{entered}{menu}<99>");
    EXPECT_TRUE(Console::WroteInOnePiece(screens::kProcessMenu));
    EXPECT_EQ(CreateDebugUtilMenu(), screens::kProcessMenu);
    EXPECT_EQ(FakeConnection::CountAlive(), 1) << "leaving destroys nothing";
}

TEST_F(ProcessMenu, LeavesByTheNumberNotByTheText) {
    EXPECT_EQ(Run("099"), "{entered}{menu}<099>");
    EXPECT_EQ(Run("4294967395"), "{entered}{menu}<099>{entered}{menu}<4294967395>");
}

TEST_F(ProcessMenu, WordsThatAreNoNumbersAreIgnoredSilently) {
    EXPECT_EQ(Run("abc -1 +1 1x x1 0x1 . 99"),
              "{entered}{menu}<abc>{menu}<-1>{menu}<+1>{menu}<1x>{menu}<x1>{menu}<0x1>{menu}<.>"
              "{menu}<99>");
}

TEST_F(ProcessMenu, WhatANumberIsTheDeviceDecides) {
    for (const char* word : {"1x", "-1", "abc", "99!"})
        CoreWatch::AcceptAsNumber(word);
    EXPECT_EQ(Run("1x -1 abc 99!"), "{entered}{menu}<1x>" + kFailedToStart +
                                        "<-1>{not implemented}{menu}"
                                        "<abc>{not implemented}{menu}<99!>");
}

TEST_F(ProcessMenu, NumbersWithoutAnEntryAreNotImplemented) {
    std::string expected = "{entered}{menu}";
    for (const std::string word : {"2", "0", "8", "00", "9", "10", "98", "100", "2147483648", "4294967295",
                                   "99999999999999999999", "9223372036854775809"}) {
        console.Type(word);
        expected += "<" + word + ">{not implemented}{menu}";
    }
    EXPECT_EQ(Run("99"), expected + "<99>");
}

TEST_F(ProcessMenu, LowThirtyTwoBitsOfANumberSelect) {
    EXPECT_EQ(Run("4294967297 8589934593 001 99"), "{entered}{menu}<4294967297>" + kFailedToStart + "<8589934593>" +
                                                       kFailedToStart + "<001>" + kFailedToStart + "<99>");
}

TEST_F(ProcessMenu, Choice3RunsTheMediaMenuAndIsThenNotImplemented) {
    EXPECT_EQ(Run("3 99 99"), "{entered}{menu}<3>{media}<99>99\n{flush}{not implemented}{menu}<99>");
}

TEST_F(ProcessMenu, Choice3GoesBackToTheMenuWhenTheMediaMenuAnswersOtherThan0) {
    mediaMenuResult = 1;
    EXPECT_EQ(Run("3 99"), "{entered}{menu}<3>{GstPluginDebugFunction}{menu}<99>");
    mediaMenuResult.reset();
}

TEST_F(ProcessMenu, Choice4RunsTheProviderMenuUntilTheTextIs99) {
    EXPECT_EQ(Run("4 099 99 99"), "{entered}{menu}<4>{list off}<099>{flush}<99>{menu}<99>");
}

// Only the provider menu has no control; without its flag no dialogue is left.
TEST_F(ProcessMenu, DialogueWithoutAControlGoesBackToTheMenu) {
    console.Type("4").Meanwhile([] { StatusForquarleDebug = false; }).Type("1 99");
    EXPECT_EQ(Run(), "{entered}{menu}<4>{list off}<1>{menu}<99>");
}

TEST_F(ProcessMenu, Choice5EntersTheTestConsole) {
    EXPECT_EQ(Run("5 5 99"), "{entered}{menu}<5>{TCDebugMenuTPMS::Enter}{menu}"
                             "<5>{TCDebugMenuTPMS::Enter}{menu}<99>");
}

TEST_F(ProcessMenu, Choice6OpensTheSiblingLibraryAndIgnoresThatItIsMissing) {
    EXPECT_EQ(Run("6 99"), "{entered}{menu}<6>" + kOpened + "{menu}<99>");
    CoreWatch::SetOpenLibrary([] { return false; });
    Timeline::Now().Clear();
    EXPECT_EQ(Run("6 99"), "{entered}{menu}<6>" + kOpened + "{menu}<99>");
}

TEST_F(ProcessMenu, Choice7EntersTheSimpleMenu) {
    EXPECT_EQ(Run("7 99 99"), "{entered}{menu}<7>{simple}" + screens::SimpleMenu("QoS is disabled\n", "") +
                                  "cmd> {flush}<99>99{menu}<99>");
}

TEST_F(ProcessMenu, RepeatsWhileTheInputIsAtItsEndOrBroken) {
    console.EndInput(5).Type("x").BreakInput(2).Type("99");
    EXPECT_EQ(Run(), "{entered}{menu}<end of input>{menu}{menu}{menu}{menu}{menu}<x>"
                     "{menu}<broken input>{menu}{menu}<99>");
}

TEST_F(ProcessMenu, RepeatsEndlessly) {
    console.EndInput(2000).Type("99");
    std::string expected = "{entered}{menu}<end of input>";
    for (int i = 0; i < 2000; ++i)
        expected += "{menu}";
    EXPECT_EQ(Run(), expected + "<99>");
}

TEST_F(ProcessMenu, AWordBeforeTheEndOfInputIsObeyedOnce) {
    console.Type("8").EndInput(2).Type("99");
    EXPECT_EQ(Run(), "{entered}{menu}<8>{not implemented}{menu}<end of input>{menu}{menu}<99>");
}

TEST_F(ProcessMenu, EntryCanBeCalledAgainAndUsesTheSameControl) {
    FakeConnection::Answer("Start", Reply().Value(0).Text(""));
    const std::string once = "{entered}{menu}<1>" + kFailedToStart + "<99>";
    EXPECT_EQ(Run("1 99"), once);
    EXPECT_EQ(Run("1 99"), once + once) << "no new connection, all else anew";
    EXPECT_EQ(FakeConnection::CountAlive(), 1);
}
