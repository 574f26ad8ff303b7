#include <algorithm>

#include <gtest/gtest.h>

#include <zarn/DebugMenu.h>

#include "DebugMenu.h"
#include "DriverTest.h"
#include "FakeConnection.h"
#include "FakeCore.h"
#include "FakeMediaMenu.h"
#include "FakeTPMS.h"
#include "Screens.h"

using namespace pieces;
using FakeCore::Reply;

using ProcessMenu = DriverTest;

TEST_F(ProcessMenu, IsPrintedWithItsPromptAndLeftWith99) {
    EXPECT_EQ(run("99"), entered + menu + typed("99"));
}

TEST_F(ProcessMenu, TextIsExact) {
    EXPECT_EQ(CreateDebugUtilMenu(), screens::processMenu);
}

TEST_F(ProcessMenu, TranscriptHoldsNothingElse) {
    run("99");
    EXPECT_EQ(console.transcript(), "DebugUtil\n"
                                    "====================================\n"
                                    "\t[Process Debug List]\t\n"
                                    "------------------------------------\n"
                                    " 1. Norvex\n"
                                    " 2. TV Player\n"
                                    " 3. TV Plug in\n"
                                    " 4. Quarle-Provider\n"
                                    " 5. Norvex Debug\n"
                                    " 6. Norvex LUMO Debug\n"
                                    " 7. Simple Debug\n"
                                    "------------------------------------\n"
                                    " 99 : Exit\n"
                                    "====================================\n"
                                    "\n"
                                    "cmd> ");
}

TEST_F(ProcessMenu, IsWrittenInOnePiece) {
    run("99");
    const std::vector<std::string> insertions = console.insertions();
    EXPECT_EQ(std::count(insertions.begin(), insertions.end(), screens::processMenu), 1);
}

TEST_F(ProcessMenu, LeavesByTheNumberNotByTheText) {
    for (const char* word : {"099", "4294967395"}) {
        Console again;
        again.type(word).run(zarn_startmaindebug);
        EXPECT_EQ(again.transcript(), "DebugUtil\n" + screens::processMenu + "\ncmd> ") << word;
    }
}

TEST_F(ProcessMenu, LeavingStopsAndDestroysNothing) {
    EXPECT_EQ(run("99"), entered + menu + typed("99"));
    EXPECT_EQ(FakeConnection::alive(), 1);
}

TEST_F(ProcessMenu, WordsThatAreNoNumbersAreIgnoredSilently) {
    EXPECT_EQ(run("abc -1 +1 1x x1 0x1 . 99"), entered + menu + typed("abc") + menu + typed("-1") +
                                                   menu + typed("+1") + menu + typed("1x") + menu +
                                                   typed("x1") + menu + typed("0x1") + menu +
                                                   typed(".") + menu + typed("99"));
}

TEST_F(ProcessMenu, WhatANumberIsTheDeviceDecides) {
    FakeCore::acceptAsNumber("1x");
    FakeCore::acceptAsNumber("-1");
    FakeCore::acceptAsNumber("abc");
    FakeCore::acceptAsNumber("99!");
    EXPECT_EQ(run("1x -1 abc 99!"), entered + menu + typed("1x") + start +
                                        "Failed to start selected[1] debug print control\n{flush}" +
                                        notImplemented + menu + typed("-1") + notImplemented +
                                        menu + typed("abc") + notImplemented + menu + typed("99!"));
}

TEST_F(ProcessMenu, NumbersWithoutAnEntryAreNotImplemented) {
    for (const char* word : {"2", "0", "8", "00", "9", "10", "98", "100", "2147483648",
                             "4294967295", "99999999999999999999", "9223372036854775809"}) {
        Console again;
        again.type(word).type("99").run(zarn_startmaindebug);
        EXPECT_EQ(again.transcript(), "DebugUtil\n" + screens::processMenu +
                                          "\ncmd> Command not implemented\n" +
                                          screens::processMenu + "\ncmd> ")
            << word;
    }
}

TEST_F(ProcessMenu, NotImplementedIsALineAndFlushed) {
    EXPECT_EQ(run("2 0 8 99"), entered + menu + typed("2") + notImplemented + menu + typed("0") +
                                   notImplemented + menu + typed("8") + notImplemented + menu +
                                   typed("99"));
}

TEST_F(ProcessMenu, LowThirtyTwoBitsOfANumberSelect) {
    FakeCore::answer("Start", Reply().value(0).text(""));
    EXPECT_EQ(run("4294967297 8589934593 001 99"),
              entered + menu + typed("4294967297") + start +
                  "Failed to start selected[1] debug print control\n{flush}" + notImplemented +
                  menu + typed("8589934593") + start +
                  "Failed to start selected[1] debug print control\n{flush}" + notImplemented +
                  menu + typed("001") + start +
                  "Failed to start selected[1] debug print control\n{flush}" + notImplemented +
                  menu + typed("99"));
}

TEST_F(ProcessMenu, Choice3RunsTheMediaMenuAndIsThenNotImplemented) {
    EXPECT_EQ(run("3 99 99"), entered + menu + typed("3") + screens::mediaMenu +
                                  "\n{flush}cmd> {flush}" + typed("99") + "99\n{flush}" +
                                  notImplemented + menu + typed("99"));
}

TEST_F(ProcessMenu, Choice3GoesBackToTheMenuWhenTheMediaMenuAnswersOtherThan0) {
    FakeMediaMenu::answer(1);
    EXPECT_EQ(run("3 99"),
              entered + menu + typed("3") + "{GstPluginDebugFunction}" + menu + typed("99"));
    FakeMediaMenu::answer({});
}

TEST_F(ProcessMenu, Choice4RunsTheProviderMenuUntilTheTextIs99) {
    EXPECT_EQ(run("4 099 99 99"), entered + menu + typed("4") + screens::providerListOff +
                                      "{flush}" + typed("099") + "{flush}" + typed("99") + menu +
                                      typed("99"));
}

// The provider menu alone has no control behind it; without its flag no dialogue is left.
TEST_F(ProcessMenu, DialogueWithoutAControlGoesBackToTheMenu) {
    console.type("4").meanwhile([] { StatusForquarleDebug = false; }).type("1 99");
    EXPECT_EQ(run(), entered + menu + typed("4") + screens::providerListOff + "{flush}" +
                         typed("1") + menu + typed("99"));
}

TEST_F(ProcessMenu, Choice5EntersTheTestConsole) {
    EXPECT_EQ(run("5 5 99"), entered + menu + typed("5") + "{TCDebugMenuTPMS::Enter}" + menu +
                                 typed("5") + "{TCDebugMenuTPMS::Enter}" + menu + typed("99"));
    EXPECT_EQ(FakeTPMS::lastEntered(), &debugMenuTPMS);
}

TEST_F(ProcessMenu, Choice6OpensTheSiblingLibrary) {
    const std::string open = "{TCDebugMenuUtility::OpenLibrary(/usr/lib64/liblumo-debugmenu.so, "
                             "lumo_subdebugmenu)}";
    EXPECT_EQ(run("6 99"), entered + menu + typed("6") + open + menu + typed("99"));
}

TEST_F(ProcessMenu, Choice6IgnoresThatTheLibraryIsMissing) {
    FakeCore::setOpenLibrary([] { return false; });
    const std::string open = "{TCDebugMenuUtility::OpenLibrary(/usr/lib64/liblumo-debugmenu.so, "
                             "lumo_subdebugmenu)}";
    EXPECT_EQ(run("6 99"), entered + menu + typed("6") + open + menu + typed("99"));
}

TEST_F(ProcessMenu, Choice7EntersTheSimpleMenu) {
    EXPECT_EQ(run("7 99 99"), entered + menu + typed("7") + isQoSEnabled + getMenuItems +
                                  screens::simpleMenu("QoS is disabled\n", "") + "cmd> {flush}" +
                                  typed("99") + "99" + menu + typed("99"));
}

TEST_F(ProcessMenu, MenuRepeatsAtTheEndOfInput) {
    console.endInput(5).type("99");
    EXPECT_EQ(run(),
              entered + menu + typed("<end>") + menu + menu + menu + menu + menu + typed("99"));
}

TEST_F(ProcessMenu, MenuRepeatsEndlessly) {
    console.endInput(2000).type("99");
    run();
    std::string expected = "DebugUtil\n";
    for (int i = 0; i < 2001; ++i)
        expected += screens::processMenu + "\ncmd> ";
    EXPECT_EQ(console.transcript(), expected);
}

TEST_F(ProcessMenu, MenuRepeatsWhileTheStreamIsBad) {
    console.breakInput(2).type("99");
    EXPECT_EQ(run(), entered + menu + typed("<broken>") + menu + menu + typed("99"));
}

TEST_F(ProcessMenu, AWordBeforeTheEndOfInputIsObeyedOnce) {
    console.type("8").endInput(2).type("99");
    EXPECT_EQ(run(), entered + menu + typed("8") + notImplemented + menu + typed("<end>") + menu +
                         menu + typed("99"));
}

TEST_F(ProcessMenu, EntryCanBeCalledAgainAndUsesTheSameControl) {
    FakeCore::answer("Start", Reply().value(0).text(""));
    const std::string once = entered + menu + typed("1") + start +
                             "Failed to start selected[1] debug print control\n{flush}" +
                             notImplemented + menu + typed("99");
    EXPECT_EQ(run("1 99"), once);
    EXPECT_EQ(run("1 99"), once + once) << "no new connection, all else anew";
    EXPECT_EQ(FakeConnection::alive(), 1);
}
