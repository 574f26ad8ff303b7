#include <gtest/gtest.h>

#include "DebugMenu.h"
#include "DriverTest.h"
#include "FakeConnection.h"

using FakeConnection::Answer;
using FakeConnection::Reply;
using Items = std::vector<Reply::Item>;

namespace {

const std::string kOff = "QoS is disabled\n";
const std::string kOn = "QoS is enabled\n";

// One print of the menu: the QoS state is asked before the items; only the prompt is flushed.
std::string Shown(const std::string& rows, const std::string& qos = kOff) {
    return "{simple}" + screens::SimpleMenu(qos, rows) + "cmd> {flush}";
}

Items ManyItems(int count) {
    Items items;
    for (int i = 0; i < count; ++i)
        items.push_back({"item", false, static_cast<unsigned int>(1000 + i)});
    return items;
}

std::string ManyRows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i)
        rows += std::to_string(i) + (i < 10 ? " " : "") + ": [OFF] item             \n";
    return rows;
}

const std::string kTunerOff = "0 : [OFF] Tuner            \n";
const std::string kTunerOn = "0 : [ON ] Tuner            \n";

class SimpleMenu : public DriverTest {
protected:
    std::string RunMenu(const std::string& words = "") {
        return Run(words, [] { debugMenuSimple.Enter(); });
    }
    static void GiveItems(const Items& items) { Answer("GetMenuItems", Reply().Value(1).Items(items)); }
};

} // namespace

TEST_F(SimpleMenu, EveryNumberBut99DoesNothingOnAnEmptyList) {
    EXPECT_EQ(RunMenu("0 1 98 100 99"), Shown("") + "<0>0" + Shown("") + "<1>1" + Shown("") + "<98>98" + Shown("") +
                                            "<100>100" + Shown("") + "<99>99");
}

TEST_F(SimpleMenu, QosLineIsTheControlsStateAskedAnew) {
    Answer("IsQoSEnabled", Reply().Value(true));
    Answer("IsQoSEnabled", Reply().Value(false));
    EXPECT_EQ(RunMenu("x 99"), Shown("", kOn) + "<x>0" + Shown("") + "<99>99");
    FakeConnection::Reset();
    Answer("IsQoSEnabled", Reply().Value(true));
    EXPECT_EQ(debugMenuSimple.m_infoQoS(), kOn);
    FakeConnection::Reset();
    EXPECT_EQ(debugMenuSimple.m_infoQoS(), kOff);
}

TEST_F(SimpleMenu, RowsShowNumberStateAndNameAndAreWrittenInOnePiece) {
    GiveItems({{"Tuner", true, 7}, {"Audio", false, 8}});
    const std::string rows = kTunerOn + "1 : [OFF] Audio            \n";
    EXPECT_EQ(RunMenu("99"), Shown(rows) + "<99>99");
    EXPECT_TRUE(Console::WroteInOnePiece(screens::SimpleMenu(kOff, rows)));
}

TEST_F(SimpleMenu, PrintingItDoesNotFlush) {
    GiveItems({{"Tuner", true, 7}});
    EXPECT_EQ(Run("", [] { debugMenuSimple.m_PrintMainMenu(); }), "{simple}" + screens::SimpleMenu(kOff, kTunerOn));
}

TEST_F(SimpleMenu, RowsHaveRoomForANumberOfTwoDigitsAndSeventeenLettersAndAreNotCut) {
    const struct {
        int number;
        bool state;
        const char* name;
        const char* row;
    } rows[] = {
        {0, false, "seventeen letters", "0 : [OFF] seventeen letters"},
        {10, true, "seventeen letters", "10: [ON ] seventeen letters"},
        {99, true, "", "99: [ON ]                  "},
        {9, true, "x", "9 : [ON ] x                "},
        {1, false, "eighteen letters..", "1 : [OFF] eighteen letters.."},
        {100, false, "a name of more than seventeen letters", "100: [OFF] a name of more than seventeen letters"}};
    for (const auto& row : rows) {
        TSMenuItem item;
        item.setName(row.name);
        item.setState(row.state);
        EXPECT_EQ(debugMenuSimple.m_MenuItem(item, row.number), row.row);
    }
}

TEST_F(SimpleMenu, NumberFlipsTheItemAndSendsIt) {
    GiveItems({{"Tuner", false, 70}, {"Audio", true, 80}});
    const std::string rows = kTunerOff + "1 : [ON ] Audio            \n";
    EXPECT_EQ(RunMenu("0 1 99"), Shown(rows) + "<0>0" + SetMenuItem("Tuner", true, 70) + Shown(rows) + "<1>1" +
                                     SetMenuItem("Audio", false, 80) + Shown(rows) + "<99>99");
}

TEST_F(SimpleMenu, NumberTypedTwiceFlipsThereAndBack) {
    GiveItems({{"Tuner", false, 7}});
    GiveItems({{"Tuner", true, 7}});
    GiveItems({{"Tuner", false, 7}});
    Answer("SetMenuItem", Reply().Value(1));
    EXPECT_EQ(RunMenu("0 0 99"), Shown(kTunerOff) + "<0>0" + SetMenuItem("Tuner", true, 7) + Shown(kTunerOn) + "<0>0" +
                                     SetMenuItem("Tuner", false, 7) + Shown(kTunerOff) + "<99>99");
}

TEST_F(SimpleMenu, RefusedFlipIsSeenInTheNextMenu) {
    GiveItems({{"Tuner", false, 7}});
    Answer("SetMenuItem", Reply().Value(-1));
    Answer("SetMenuItem", Reply().Failed());
    const std::string refused = Shown(kTunerOff) + "<0>0" + SetMenuItem("Tuner", true, 7);
    EXPECT_EQ(RunMenu("0 0 99"), refused + refused + Shown(kTunerOff) + "<99>99");
}

TEST_F(SimpleMenu, NumbersReferToTheListJustShown) {
    GiveItems({{"a", false, 1}, {"b", false, 2}});
    GiveItems({{"c", true, 3}});
    const std::string second = Shown("0 : [ON ] c                \n");
    EXPECT_EQ(RunMenu("1 1 0 99"), Shown("0 : [OFF] a                \n1 : [OFF] b                \n") + "<1>1" +
                                       SetMenuItem("b", true, 2) + second + "<1>1" + second + "<0>0" +
                                       SetMenuItem("c", false, 3) + second + "<99>99");
}

TEST_F(SimpleMenu, ListThatDoesNotComeIsEmpty) {
    GiveItems({{"Tuner", false, 1}});
    Answer("GetMenuItems", Reply().Failed());
    EXPECT_EQ(RunMenu("x 0 99"), Shown(kTunerOff) + "<x>0" + Shown("") + "<0>0" + Shown("") + "<99>99");
}

TEST_F(SimpleMenu, OddWordsEchoWhatWasRead) {
    GiveItems({{"a", false, 1}, {"b", false, 2}});
    const std::string menu = Shown("0 : [OFF] a                \n1 : [OFF] b                \n");
    EXPECT_EQ(RunMenu("abc -1 - 1x +1 0x1 2 99"), menu + "<abc>0" + menu + "<-1>-1" + menu + "<->0" + menu + "<1x>1" +
                                                      SetMenuItem("b", true, 2) + menu + "<+1>1" +
                                                      SetMenuItem("b", true, 2) + menu + "<0x1>0" +
                                                      SetMenuItem("a", true, 1) + menu + "<2>2" + menu + "<99>99");
}

TEST_F(SimpleMenu, NumberOutOfRangeEchoesTheLimitAndDoesNothing) {
    EXPECT_EQ(RunMenu("99999999999 -99999999999 2147483648 4294967395 99"),
              Shown("") + "<99999999999>2147483647" + Shown("") + "<-99999999999>-2147483648" + Shown("") +
                  "<2147483648>2147483647" + Shown("") + "<4294967395>2147483647" + Shown("") + "<99>99");
}

TEST_F(SimpleMenu, LeavesByTheNumberAndCanBeEnteredAgain) {
    EXPECT_EQ(RunMenu("099"), Shown("") + "<099>99");
    EXPECT_EQ(RunMenu("+99x"), Shown("") + "<099>99" + Shown("") + "<+99x>99");
}

TEST_F(SimpleMenu, NinetyNineItemsCanBeLeft) {
    GiveItems(ManyItems(99));
    const std::string menu = Shown(ManyRows(99));
    EXPECT_EQ(RunMenu("98 99"), menu + "<98>98" + SetMenuItem("item", true, 1098) + menu + "<99>99");
}

TEST_F(SimpleMenu, HundredItemsCannot) {
    GiveItems(ManyItems(100));
    GiveItems(ManyItems(100));
    GiveItems({});
    const std::string flipped = Shown(ManyRows(100)) + "<99>99" + SetMenuItem("item", true, 1099);
    EXPECT_EQ(RunMenu("99 99 99"), flipped + flipped + Shown("") + "<99>99");
}

TEST_F(SimpleMenu, RepeatsWhileTheInputIsAtItsEndOrBroken) {
    console.EndInput(3).Type("x").BreakInput(2).Type("99");
    EXPECT_EQ(RunMenu(), Shown("") + "<end of input>" + Shown("") + Shown("") + Shown("") + "<x>0" + Shown("") +
                             "<broken input>" + Shown("") + Shown("") + "<99>99");
}

TEST_F(SimpleMenu, NumberIsReadFromTheBeginningOfAText) {
    const struct {
        const char* text;
        int number;
        bool ok;
    } cases[] = {{"7", 7, true},
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

TEST_F(SimpleMenu, SelectCmdAsksAndAnswersTheNumberOrMinus1) {
    std::vector<int> numbers;
    console.Type("5 -3 x 99999999999 8y").EndInput(2, "? ");
    EXPECT_EQ(Run("4",
                  [&numbers] {
                      for (int i = 0; i < 8; ++i)
                          numbers.push_back(debugMenuSimple.m_SelectCmd("Which? "));
                  }),
              "Which? {flush}<5>Which? {flush}<-3>Which? {flush}<x>Which? {flush}<99999999999>"
              "Which? {flush}<8y>Which? {flush}<end of input>Which? {flush}Which? {flush}<4>");
    EXPECT_EQ(numbers, (std::vector<int>{5, -3, -1, -1, 8, -1, -1, 4}));
}
