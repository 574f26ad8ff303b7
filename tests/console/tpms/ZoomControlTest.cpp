// Item 19: zoom windows.

#include "TPMSScenario.h"

namespace {

class ZoomControl : public TPMSScenario {
protected:
    // Types words to the prompts of three rectangles.
    static std::string rectangles(const std::vector<std::string>& words) {
        const char* prompts[] = {"SrcX = ",  "SrcY = ",  "SrcWidth = ",  "SrcHeight = ",
                                 "DstX = ",  "DstY = ",  "DstWidth = ",  "DstHeight = ",
                                 "MainX = ", "MainY = ", "MainWidth = ", "MainHeight = "};
        std::string dialogue;
        for (std::size_t i = 0; i < words.size(); ++i)
            dialogue += asked(prompts[i], words[i]);
        return dialogue;
    }
};

const std::string kMenu = "====================================\n"
                          "\t[Test19 List - IZoomControl]\t\n"
                          "------------------------------------\n"
                          " 1. Check if zoom available\n"
                          " 2. Check available zoom sharing type\n"
                          " 3. Create zoom window\n"
                          " 4. Delete zoom window\n"
                          " 5. Set zoom window (ON/OFF)\n"
                          " 6. Mute/unmute zoom window\n"
                          " 7. Check if zoom window started\n"
                          " 8. Check if zoom window muted\n"
                          " 9. Set zoom window src-dst\n"
                          " 10. Get connected zoom windows\n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n"
                          "\n";
const std::string kCreated = "{CreateZoomControl(1, 0)}" + kMenu;
const std::string kZoomLeft = kMenu + cmd("99") + "{Destroy(ZoomControl)}";

std::string window(const std::string& word) {
    return asked("WindowId = ", word);
}
std::string onOff(const std::string& word) {
    return asked("OnOff (1/0) = ", word);
}

} // namespace

TEST_F(ZoomControl, TellsWhetherZoomIsAvailable) {
    tv.give("ZoomControl.IsZoomAvailable", {1});
    EXPECT_EQ(visit("19", "1 99"), kCreated + cmd("1") + "{ZoomControl.IsZoomAvailable(false)}" +
                                       "Zoom available[1] API ret[1]\n" + kZoomLeft);
    expectWrittenWhole(kMenu);
}

TEST_F(ZoomControl, TellsThatZoomIsNotAvailable) {
    tv.answer("ZoomControl.IsZoomAvailable", {-3});
    EXPECT_EQ(visit("19", "1 99"), kCreated + cmd("1") + "{ZoomControl.IsZoomAvailable(false)}" +
                                       "Zoom available[0] API ret[-3]\n" + kZoomLeft);
}

TEST_F(ZoomControl, PrintsTheSharingTypeAsANumber) {
    tv.give("ZoomControl.GetZoomSharingType", {-7});
    tv.answer("ZoomControl.GetZoomSharingType", {2});
    EXPECT_EQ(visit("19", "2 2 99"), kCreated + cmd("2") + "{ZoomControl.GetZoomSharingType(0)}" +
                                         "Zoom sharing available type[-7] API ret[2]\n" + kMenu +
                                         cmd("2") + "{ZoomControl.GetZoomSharingType(0)}" +
                                         "Zoom sharing available type[0] API ret[1]\n" + kZoomLeft);
}

TEST_F(ZoomControl, CreatesAWindowFromThreeRectangles) {
    tv.give("ZoomControl.CreateZoomWindow", {5});
    EXPECT_EQ(visit("19", "3 1 2 3 4 5 6 7 8 9 10 11 12 99"),
              kCreated + cmd("3") +
                  rectangles({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}) +
                  "{ZoomControl.CreateZoomWindow(-1, {1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12})}"
                  "Created window handle[5] API ret[1]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, CreatesAWindowWithASourceXOfMinusOneWithoutANumber) {
    tv.answer("ZoomControl.CreateZoomWindow", {-1});
    EXPECT_EQ(visit("19", "3 abc 2 3 4 5 6 7 8 9 10 11 12 99"),
              kCreated + cmd("3") +
                  rectangles({"abc", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}) +
                  "{ZoomControl.CreateZoomWindow(-1, {-1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12})}"
                  "Created window handle[-1] API ret[-1]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, PassesEveryWordOfARectangleUnchecked) {
    EXPECT_EQ(
        visit("19", "3 +1 -2 007 4x 2147483648 0x10 -2147483648 2147483647 abc - 1.5 -1 99"),
        kCreated + cmd("3") +
            rectangles({"+1", "-2", "007", "4x", "2147483648", "0x10", "-2147483648", "2147483647",
                        "abc", "-", "1.5", "-1"}) +
            "{ZoomControl.CreateZoomWindow(-1, {1, -2, 7, 4}, {-1, 0, -2147483648, 2147483647}, "
            "{-1, -1, 1, -1})}Created window handle[-1] API ret[1]\n" +
            kZoomLeft);
}

TEST_F(ZoomControl, DeletesAWindow) {
    EXPECT_EQ(visit("19", "4 3 1 2 3 4 99"),
              kCreated + cmd("4") + window("3") + asked("MainX = ", "1") + asked("MainY = ", "2") +
                  asked("MainWidth = ", "3") + asked("MainHeight = ", "4") +
                  "{ZoomControl.DeleteZoomWindow([3], {1, 2, 3, 4})}"
                  "Window destroy! API ret[1]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, PrintsTheAnswerToADeletion) {
    tv.answer("ZoomControl.DeleteZoomWindow", {-2147483647});
    EXPECT_EQ(visit("19", "4 abc 1 x 3 4 99"),
              kCreated + cmd("4") + window("abc") + asked("MainX = ", "1") +
                  asked("MainY = ", "x") + asked("MainWidth = ", "3") +
                  asked("MainHeight = ", "4") +
                  "{ZoomControl.DeleteZoomWindow([-1], {1, -1, 3, 4})}"
                  "Window destroy! API ret[-2147483647]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, SwitchesAWindowOnAndOff) {
    tv.answer("ZoomControl.SetZoomWindow", {1, 0});
    EXPECT_EQ(visit("19", "5 3 1 5 3 0 99"),
              kCreated + cmd("5") + window("3") + onOff("1") +
                  "{ZoomControl.SetZoomWindow([3], true)}Window set! API ret[1]\n" + kMenu +
                  cmd("5") + window("3") + onOff("0") +
                  "{ZoomControl.SetZoomWindow([3], false)}Window set! API ret[0]\n" + kZoomLeft);
}

TEST_F(ZoomControl, SwitchesAWindowOnForEveryNumberThatIsNot0) {
    console.type("19");
    std::string expected = "{CreateZoomControl(1, 0)}";
    for (const std::string word :
         {"7", "-5", "256", "2147483647", "+1", "abc", "-1", "99999999999"}) {
        console.type("5 3").type(word);
        expected += kMenu + cmd("5") + window("3") + onOff(word) +
                    "{ZoomControl.SetZoomWindow([3], true)}Window set! API ret[1]\n";
    }
    for (const std::string word : {"0", "00", "+0", "-0", "0x10", "0abc"}) {
        console.type("5 3").type(word);
        expected += kMenu + cmd("5") + window("3") + onOff(word) +
                    "{ZoomControl.SetZoomWindow([3], false)}Window set! API ret[1]\n";
    }
    console.type("99");
    EXPECT_EQ(visitTyped("19"), expected + kZoomLeft);
}

// "Muted" in both cases, as the testers know it.
TEST_F(ZoomControl, MutesAndUnmutesAWindow) {
    tv.answer("ZoomControl.MuteZoomWindow", {4, -4});
    EXPECT_EQ(visit("19", "6 3 2 6 abc 0 99"),
              kCreated + cmd("6") + window("3") + onOff("2") +
                  "{ZoomControl.MuteZoomWindow([3], true)}Window muted! API ret[4]\n" + kMenu +
                  cmd("6") + window("abc") + onOff("0") +
                  "{ZoomControl.MuteZoomWindow([-1], false)}Window muted! API ret[-4]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, TellsWhetherAWindowIsStarted) {
    tv.give("ZoomControl.IsZoomWindowStarted", {1});
    EXPECT_EQ(visit("19", "7 3 7 x 99"),
              kCreated + cmd("7") + window("3") + "{ZoomControl.IsZoomWindowStarted(3, false)}" +
                  "Is window started[1] API ret[1]\n" + kMenu + cmd("7") + window("x") +
                  "{ZoomControl.IsZoomWindowStarted(-1, false)}" +
                  "Is window started[0] API ret[1]\n" + kZoomLeft);
}

TEST_F(ZoomControl, TellsWhetherAWindowIsMuted) {
    tv.give("ZoomControl.IsZoomWindowMuted", {1});
    tv.answer("ZoomControl.IsZoomWindowMuted", {3, -1});
    EXPECT_EQ(visit("19", "8 2147483647 8 0x3 99"),
              kCreated + cmd("8") + window("2147483647") +
                  "{ZoomControl.IsZoomWindowMuted(2147483647, false)}" +
                  "Is window muted[1] API ret[3]\n" + kMenu + cmd("8") + window("0x3") +
                  "{ZoomControl.IsZoomWindowMuted(0, false)}" + "Is window muted[0] API ret[-1]\n" +
                  kZoomLeft);
}

TEST_F(ZoomControl, SetsTheRectanglesOfAWindow) {
    tv.answer("ZoomControl.SetZoomWindowRect", {0});
    EXPECT_EQ(visit("19", "9 3 12 11 10 9 8 7 6 5 4 3 2 one 99"),
              kCreated + cmd("9") + window("3") +
                  rectangles({"12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", "one"}) +
                  "{ZoomControl.SetZoomWindowRect(3, {12, 11, 10, 9}, {8, 7, 6, 5}, {4, 3, 2, -1})}"
                  "Window size updated! API ret[0]\n" +
                  kZoomLeft);
}

// The first line has no closing bracket, and the list ends in a comma.
TEST_F(ZoomControl, ListsTheConnectedWindows) {
    tv.giveZoomWindows({3, 5});
    EXPECT_EQ(visit("19", "10 99"), kCreated + cmd("10") +
                                        "{ZoomControl.GetConnectedZoomWindows([])}"
                                        "GetConnectedZoomWindows API ret[1\n"
                                        "Connected window ids = [3, 5, ]\n" +
                                        kZoomLeft);
}

TEST_F(ZoomControl, ListsOneConnectedWindow) {
    tv.giveZoomWindows({-9});
    tv.answer("ZoomControl.GetConnectedZoomWindows", {-2});
    EXPECT_EQ(visit("19", "10 10 99"), kCreated + cmd("10") +
                                           "{ZoomControl.GetConnectedZoomWindows([])}"
                                           "GetConnectedZoomWindows API ret[-2\n"
                                           "Connected window ids = [-9, ]\n" +
                                           kMenu + cmd("10") +
                                           "{ZoomControl.GetConnectedZoomWindows([])}"
                                           "GetConnectedZoomWindows API ret[1\n"
                                           "Connected window ids = [-9, ]\n" +
                                           kZoomLeft);
}

TEST_F(ZoomControl, ListsNoConnectedWindows) {
    EXPECT_EQ(visit("19", "10 99"), kCreated + cmd("10") +
                                        "{ZoomControl.GetConnectedZoomWindows([])}"
                                        "GetConnectedZoomWindows API ret[1\n"
                                        "Connected window ids = []\n" +
                                        kZoomLeft);
}

TEST_F(ZoomControl, DoesNotSupportOtherNumbers) {
    console.type("19");
    std::string expected = "{CreateZoomControl(1, 0)}";
    for (const std::string word :
         {"0", "11", "98", "100", "-2", "-99", "0x1", "2147483647", "-2147483648", "257"}) {
        console.type(word);
        expected += kMenu + cmd(word) + "Unsupported command!\n";
    }
    console.type("99");
    EXPECT_EQ(visitTyped("19"), expected + kZoomLeft);
}

TEST_F(ZoomControl, ShowsItsMenuAgainForWordsThatAreNoNumbers) {
    console.type("19");
    std::string expected = "{CreateZoomControl(1, 0)}";
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += kMenu + cmd(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("19"), expected + kZoomLeft);
}

TEST_F(ZoomControl, TakesEverySpellingOfItsCommands) {
    console.type("19");
    std::string expected = "{CreateZoomControl(1, 0)}";
    for (const std::string& word : spellingsOf("10")) {
        console.type(word);
        expected += kMenu + cmd(word) +
                    "{ZoomControl.GetConnectedZoomWindows([])}"
                    "GetConnectedZoomWindows API ret[1\n"
                    "Connected window ids = []\n";
    }
    console.type("+0099x");
    EXPECT_EQ(visitTyped("19"), expected + kMenu + cmd("+0099x") + "{Destroy(ZoomControl)}");
}

TEST_F(ZoomControl, SaysThatItsCreationFailed) {
    tv.answerCreation("CreateZoomControl", -1, false);
    EXPECT_EQ(visit("19", ""), "{CreateZoomControl(1, 0)}ZoomControl interface creation failed!\n");
}

// The creation's result counts, and any other than 0 is a failure.
TEST_F(ZoomControl, TakesAPositiveCreationForAFailure) {
    tv.answerCreation("CreateZoomControl", 1, false);
    EXPECT_EQ(visit("19", ""), "{CreateZoomControl(1, 0)}ZoomControl interface creation failed!\n");
}

TEST_F(ZoomControl, RepeatsItsMenuAtTheEndOfInput) {
    console.type("19").endInput(2).type("99");
    EXPECT_EQ(visitTyped("19"), kCreated + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 99}{Destroy(ZoomControl)}");
}

TEST_F(ZoomControl, PassesMinusOneForEveryValueAtTheEndOfInput) {
    console.type("19 5").endInput(1).type("99");
    EXPECT_EQ(visitTyped("19"), kCreated + cmd("5") + window("<end>") +
                                    "OnOff (1/0) = {ZoomControl.SetZoomWindow([-1], true)}"
                                    "Window set! API ret[1]\n" +
                                    kZoomLeft);
}

TEST_F(ZoomControl, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_ZoomControlTest(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}
