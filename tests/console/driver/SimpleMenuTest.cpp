#include <algorithm>

#include <gtest/gtest.h>

#include "DebugMenu.h"
#include "DriverTest.h"
#include "FakeCore.h"
#include "Screens.h"

using namespace pieces;
using FakeCore::Reply;
using Items = std::vector<Reply::Item>;

namespace {

const std::string kOff = "QoS is disabled\n";
const std::string kOn = "QoS is enabled\n";

// One print of the menu: the QoS state is asked before the items; the prompt alone is flushed.
std::string shown(const std::string& qos, const std::string& rows) {
    return isQoSEnabled + getMenuItems + screens::simpleMenu(qos, rows) + "cmd> {flush}";
}

Items manyItems(int count) {
    Items items;
    for (int i = 0; i < count; ++i)
        items.push_back({"item", false, static_cast<unsigned int>(1000 + i)});
    return items;
}

std::string manyRows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i)
        rows += std::to_string(i) + (i < 10 ? " " : "") + ": [OFF] item             \n";
    return rows;
}

} // namespace

class SimpleMenu : public DriverTest {
protected:
    std::string runMenu(const std::string& words = "") {
        return run(words, [] { debugMenuSimple.Enter(); });
    }
    static void giveItems(const Items& items) {
        FakeCore::answer("GetMenuItems", Reply().value(1).items(items));
    }
};

TEST_F(SimpleMenu, EmptyListShowsFrameQosLineAndExit) {
    EXPECT_EQ(runMenu("99"), isQoSEnabled + getMenuItems +
                                 "\n====================================\n"
                                 "     [Simple menu]\n"
                                 "------------------------------------\n"
                                 "QoS is disabled\n"
                                 "====================================\n"
                                 "99 : Exit\n"
                                 "====================================\n"
                                 "cmd> {flush}{typed 99}99");
}

TEST_F(SimpleMenu, EveryNumberBut99DoesNothingOnAnEmptyList) {
    EXPECT_EQ(runMenu("0 1 98 100 99"), shown(kOff, "") + typed("0") + "0" + shown(kOff, "") +
                                            typed("1") + "1" + shown(kOff, "") + typed("98") +
                                            "98" + shown(kOff, "") + typed("100") + "100" +
                                            shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, QosLineTellsTheControlsState) {
    FakeCore::answer("IsQoSEnabled", Reply().value(true));
    FakeCore::answer("IsQoSEnabled", Reply().value(false));
    EXPECT_EQ(runMenu("x 99"),
              shown(kOn, "") + typed("x") + "0" + shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, QosLineIsAskedAnew) {
    FakeCore::answer("IsQoSEnabled", Reply().value(true));
    EXPECT_EQ(debugMenuSimple.m_infoQoS(), "QoS is enabled\n");
    FakeCore::reset();
    EXPECT_EQ(debugMenuSimple.m_infoQoS(), "QoS is disabled\n");
}

TEST_F(SimpleMenu, RowsShowNumberStateAndName) {
    giveItems({{"Tuner", true, 7}, {"Audio", false, 8}});
    EXPECT_EQ(runMenu("99"), shown(kOff, "0 : [ON ] Tuner            \n"
                                         "1 : [OFF] Audio            \n") +
                                 typed("99") + "99");
}

TEST_F(SimpleMenu, MenuIsWrittenInOnePiece) {
    giveItems({{"Tuner", true, 7}});
    runMenu("99");
    const std::vector<std::string> insertions = console.insertions();
    EXPECT_EQ(std::count(insertions.begin(), insertions.end(),
                         screens::simpleMenu(kOff, "0 : [ON ] Tuner            \n")),
              1);
}

TEST_F(SimpleMenu, PrintingItDoesNotFlush) {
    giveItems({{"Tuner", true, 7}});
    EXPECT_EQ(run("", [] { debugMenuSimple.m_PrintMainMenu(); }),
              isQoSEnabled + getMenuItems +
                  screens::simpleMenu(kOff, "0 : [ON ] Tuner            \n"));
}

TEST_F(SimpleMenu, RowsAreTwentySevenCharactersUpToIndex99AndSeventeenOfName) {
    TSMenuItem item;
    item.setName("seventeen letters");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 0), "0 : [OFF] seventeen letters");
    item.setState(true);
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 10), "10: [ON ] seventeen letters");
    item.setName("");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 99), "99: [ON ]                  ");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 5).size(), 27u);
    item.setName("x");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 9).size(), 27u);
}

TEST_F(SimpleMenu, LongNamesAndNumbersAreNotCut) {
    TSMenuItem item;
    item.setName("a name of more than seventeen letters");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 100),
              "100: [OFF] a name of more than seventeen letters");
    item.setName("eighteen letters..");
    EXPECT_EQ(debugMenuSimple.m_MenuItem(item, 1), "1 : [OFF] eighteen letters..");
}

TEST_F(SimpleMenu, NumberFlipsTheItemAndSendsIt) {
    giveItems({{"Tuner", false, 70}, {"Audio", true, 80}});
    const std::string rows = "0 : [OFF] Tuner            \n1 : [ON ] Audio            \n";
    EXPECT_EQ(runMenu("0 1 99"), shown(kOff, rows) + typed("0") + "0" +
                                     setMenuItem("Tuner", true, 70) + shown(kOff, rows) +
                                     typed("1") + "1" + setMenuItem("Audio", false, 80) +
                                     shown(kOff, rows) + typed("99") + "99");
}

TEST_F(SimpleMenu, NumberTypedTwiceFlipsThereAndBack) {
    giveItems({{"Tuner", false, 7}});
    giveItems({{"Tuner", true, 7}});
    giveItems({{"Tuner", false, 7}});
    FakeCore::answer("SetMenuItem", Reply().value(1));
    const std::string off = "0 : [OFF] Tuner            \n";
    const std::string on = "0 : [ON ] Tuner            \n";
    EXPECT_EQ(runMenu("0 0 99"), shown(kOff, off) + typed("0") + "0" +
                                     setMenuItem("Tuner", true, 7) + shown(kOff, on) + typed("0") +
                                     "0" + setMenuItem("Tuner", false, 7) + shown(kOff, off) +
                                     typed("99") + "99");
}

TEST_F(SimpleMenu, RefusedFlipIsSeenInTheNextMenu) {
    giveItems({{"Tuner", false, 7}});
    FakeCore::answer("SetMenuItem", Reply().value(-1).failed());
    const std::string off = "0 : [OFF] Tuner            \n";
    EXPECT_EQ(runMenu("0 0 99"), shown(kOff, off) + typed("0") + "0" +
                                     setMenuItem("Tuner", true, 7) + shown(kOff, off) + typed("0") +
                                     "0" + setMenuItem("Tuner", true, 7) + shown(kOff, off) +
                                     typed("99") + "99");
}

TEST_F(SimpleMenu, NumbersReferToTheListJustShown) {
    giveItems({{"a", false, 1}, {"b", false, 2}});
    giveItems({{"c", true, 3}});
    const std::string first = "0 : [OFF] a                \n1 : [OFF] b                \n";
    const std::string second = "0 : [ON ] c                \n";
    EXPECT_EQ(runMenu("1 1 0 99"),
              shown(kOff, first) + typed("1") + "1" + setMenuItem("b", true, 2) +
                  shown(kOff, second) + typed("1") + "1" + shown(kOff, second) + typed("0") + "0" +
                  setMenuItem("c", false, 3) + shown(kOff, second) + typed("99") + "99");
}

TEST_F(SimpleMenu, ListThatDoesNotComeIsEmpty) {
    giveItems({{"a", false, 1}});
    FakeCore::answer("GetMenuItems", Reply().failed());
    EXPECT_EQ(runMenu("x 0 99"), shown(kOff, "0 : [OFF] a                \n") + typed("x") + "0" +
                                     shown(kOff, "") + typed("0") + "0" + shown(kOff, "") +
                                     typed("99") + "99");
}

TEST_F(SimpleMenu, OddWordsEchoWhatWasRead) {
    giveItems({{"a", false, 1}, {"b", false, 2}});
    const std::string menuText =
        shown(kOff, "0 : [OFF] a                \n1 : [OFF] b                \n");
    EXPECT_EQ(runMenu("abc -1 - 1x +1 0x1 2 99"),
              menuText + typed("abc") + "0" + menuText + typed("-1") + "-1" + menuText +
                  typed("-") + "0" + menuText + typed("1x") + "1" + setMenuItem("b", true, 2) +
                  menuText + typed("+1") + "1" + setMenuItem("b", true, 2) + menuText +
                  typed("0x1") + "0" + setMenuItem("a", true, 1) + menuText + typed("2") + "2" +
                  menuText + typed("99") + "99");
}

TEST_F(SimpleMenu, NumberOutOfRangeEchoesTheLimitAndDoesNothing) {
    EXPECT_EQ(runMenu("99999999999 -99999999999 2147483648 4294967395 99"),
              shown(kOff, "") + typed("99999999999") + "2147483647" + shown(kOff, "") +
                  typed("-99999999999") + "-2147483648" + shown(kOff, "") + typed("2147483648") +
                  "2147483647" + shown(kOff, "") + typed("4294967395") + "2147483647" +
                  shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, LeavesByTheNumber) {
    EXPECT_EQ(runMenu("099"), shown(kOff, "") + typed("099") + "99");
    Console again;
    again.type("+99x").run([] { debugMenuSimple.Enter(); });
    EXPECT_EQ(again.transcript(), screens::simpleMenu(kOff, "") + "cmd> 99");
}

TEST_F(SimpleMenu, NinetyNineItemsCanBeLeft) {
    giveItems(manyItems(99));
    EXPECT_EQ(runMenu("98 99"), shown(kOff, manyRows(99)) + typed("98") + "98" +
                                    setMenuItem("item", true, 1098) + shown(kOff, manyRows(99)) +
                                    typed("99") + "99");
}

TEST_F(SimpleMenu, HundredItemsCannot) {
    giveItems(manyItems(100));
    giveItems(manyItems(100));
    giveItems({});
    EXPECT_EQ(runMenu("99 99 99"),
              shown(kOff, manyRows(100)) + typed("99") + "99" + setMenuItem("item", true, 1099) +
                  shown(kOff, manyRows(100)) + typed("99") + "99" +
                  setMenuItem("item", true, 1099) + shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, MenuRepeatsAtTheEndOfInput) {
    console.endInput(3).type("99");
    EXPECT_EQ(runMenu(), shown(kOff, "") + typed("<end>") + shown(kOff, "") + shown(kOff, "") +
                             shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, MenuRepeatsWhileTheStreamIsBad) {
    console.breakInput(2).type("99");
    EXPECT_EQ(runMenu(), shown(kOff, "") + typed("<broken>") + shown(kOff, "") + shown(kOff, "") +
                             typed("99") + "99");
}

TEST_F(SimpleMenu, CanBeEnteredAgain) {
    runMenu("99");
    EXPECT_EQ(runMenu("99"),
              shown(kOff, "") + typed("99") + "99" + shown(kOff, "") + typed("99") + "99");
}

TEST_F(SimpleMenu, NumberIsReadFromTheBeginningOfAText) {
    struct {
        const char* text;
        int number;
        bool ok;
    } const cases[] = {{"7", 7, true},
                       {"-7", -7, true},
                       {"+7", 7, true},
                       {"  7", 7, true},
                       {"12abc", 12, true},
                       {"1.5", 1, true},
                       {"0x10", 0, true},
                       {"007", 7, true},
                       {"2147483647", 2147483647, true},
                       {"-2147483648", -2147483647 - 1, true},
                       {"2147483648", 2147483647, false},
                       {"-2147483649", -2147483647 - 1, false},
                       {"", 0, false},
                       {"abc", 0, false},
                       {"-", 0, false}};
    for (const auto& one : cases) {
        bool ok = !one.ok;
        EXPECT_EQ(debugMenuSimple.m_StrToInt(one.text, &ok), one.number) << one.text;
        EXPECT_EQ(ok, one.ok) << one.text;
        EXPECT_EQ(debugMenuSimple.m_StrToInt(one.text, nullptr), one.number) << one.text;
    }
}

TEST_F(SimpleMenu, SelectCmdAsksAndAnswersTheNumber) {
    std::vector<int> numbers;
    EXPECT_EQ(run("5 -3 x 99999999999 8y",
                  [&numbers] {
                      for (int i = 0; i < 5; ++i)
                          numbers.push_back(debugMenuSimple.m_SelectCmd("Which? "));
                  }),
              "Which? {flush}{typed 5}Which? {flush}{typed -3}Which? {flush}{typed x}"
              "Which? {flush}{typed 99999999999}Which? {flush}{typed 8y}");
    EXPECT_EQ(numbers, (std::vector<int>{5, -3, -1, -1, 8}));
}

TEST_F(SimpleMenu, SelectCmdAnswersMinus1WhenNothingCanBeRead) {
    std::vector<int> numbers;
    console.endInput(2, "? ").type("4");
    run("", [&numbers] {
        for (int i = 0; i < 3; ++i)
            numbers.push_back(debugMenuSimple.m_SelectCmd("? "));
    });
    EXPECT_EQ(numbers, (std::vector<int>{-1, -1, 4}));
}
