// Item 19: zoom windows.

#include "TPMSScenario.h"

namespace {

class ZoomControl : public TPMSScenario {
protected:
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kZoomControl, words); }
};

// The prompts of three rectangles, answered by these words.
std::string Rectangles(const std::string& words, int first = 0) {
    const char* const prompts[] = {
        "SrcX = ",     "SrcY = ",      "SrcWidth = ", "SrcHeight = ", "DstX = ",      "DstY = ",
        "DstWidth = ", "DstHeight = ", "MainX = ",    "MainY = ",     "MainWidth = ", "MainHeight = "};
    std::string dialogue;
    std::istringstream in(words);
    for (std::string word; in >> word;)
        dialogue += prompts[first++] + ("<" + word + ">");
    return dialogue;
}
std::string MainRectangle(const std::string& words) {
    return Rectangles(words, 8);
}

// A command for the window of that number.
std::string ForWindow(const std::string& command, const std::string& window) {
    return "{menu}<" + command + ">WindowId = <" + window + ">";
}
std::string OnOff(const std::string& command, const std::string& window, const std::string& word) {
    return ForWindow(command, window) + "OnOff (1/0) = <" + word + ">";
}

} // namespace

TEST_F(ZoomControl, ShowsWhetherZoomIsAvailable) {
    tv.Give("ZoomControl.IsZoomAvailable", {1});
    tv.Answer("ZoomControl.IsZoomAvailable", {1, -3});
    EXPECT_EQ(Visit("1 1"), "{menu}<1>{ZoomControl.IsZoomAvailable(false)}"
                            "Zoom available[1] API ret[1]\n"
                            "{menu}<1>{ZoomControl.IsZoomAvailable(false)}"
                            "Zoom available[0] API ret[-3]\n");
}

TEST_F(ZoomControl, PrintsTheSharingTypeAsANumber) {
    tv.Give("ZoomControl.GetZoomSharingType", {-7});
    tv.Answer("ZoomControl.GetZoomSharingType", {2});
    EXPECT_EQ(Visit("2 2"), "{menu}<2>{ZoomControl.GetZoomSharingType(0)}"
                            "Zoom sharing available type[-7] API ret[2]\n"
                            "{menu}<2>{ZoomControl.GetZoomSharingType(0)}"
                            "Zoom sharing available type[0] API ret[1]\n");
}

TEST_F(ZoomControl, CreatesAWindowFromThreeRectangles) {
    tv.Give("ZoomControl.CreateZoomWindow", {5});
    EXPECT_EQ(Visit("3 1 2 3 4 5 6 7 8 9 10 11 12"),
              "{menu}<3>" + Rectangles("1 2 3 4 5 6 7 8 9 10 11 12") +
                  "{ZoomControl.CreateZoomWindow(-1, {1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12})}"
                  "Created window handle[5] API ret[1]\n");
}

TEST_F(ZoomControl, PassesEveryWordOfARectangleUnchecked) {
    const std::string words = "+1 -2 007 4x 2147483648 0x10 -2147483648 2147483647 abc - 1.5 -1";
    tv.Answer("ZoomControl.CreateZoomWindow", {-1});
    EXPECT_EQ(Visit("3 " + words), "{menu}<3>" + Rectangles(words) +
                                       "{ZoomControl.CreateZoomWindow(-1, {1, -2, 7, 4}, "
                                       "{-1, 0, -2147483648, 2147483647}, {-1, -1, 1, -1})}"
                                       "Created window handle[-1] API ret[-1]\n");
}

TEST_F(ZoomControl, DeletesAWindow) {
    tv.Answer("ZoomControl.DeleteZoomWindow", {1, -2147483647});
    EXPECT_EQ(Visit("4 3 1 2 3 4 4 abc 1 x 3 4"),
              ForWindow("4", "3") + MainRectangle("1 2 3 4") +
                  "{ZoomControl.DeleteZoomWindow([3], {1, 2, 3, 4})}Window destroy! API ret[1]\n" +
                  ForWindow("4", "abc") + MainRectangle("1 x 3 4") +
                  "{ZoomControl.DeleteZoomWindow([-1], {1, -1, 3, 4})}"
                  "Window destroy! API ret[-2147483647]\n");
}

TEST_F(ZoomControl, SwitchesAWindowOnForEveryNumberThatIsNot0) {
    std::string words;
    std::string expected;
    for (const std::string word : {"1", "7", "-5", "256", "2147483647", "+1", "abc", "-1", "99999999999", "0", "00",
                                   "+0", "-0", "0x10", "0abc"}) {
        const bool on = word.find_first_of("123456789a") != std::string::npos && word != "0x10" && word != "0abc";
        words += "5 3 " + word + " ";
        expected += OnOff("5", "3", word) + "{ZoomControl.SetZoomWindow([3], " + (on ? "true" : "false") +
                    ")}Window set! API ret[0]\n";
    }
    tv.Answer("ZoomControl.SetZoomWindow", std::vector<int>(15, 0));
    EXPECT_EQ(Visit(words), expected);
}

// "Muted" in both cases, as the testers know it.
TEST_F(ZoomControl, MutesAndUnmutesAWindow) {
    tv.Answer("ZoomControl.MuteZoomWindow", {4, -4});
    EXPECT_EQ(Visit("6 3 2 6 abc 0"),
              OnOff("6", "3", "2") + "{ZoomControl.MuteZoomWindow([3], true)}Window muted! API ret[4]\n" +
                  OnOff("6", "abc", "0") + "{ZoomControl.MuteZoomWindow([-1], false)}Window muted! API ret[-4]\n");
}

TEST_F(ZoomControl, ShowsWhetherAWindowIsStarted) {
    tv.Give("ZoomControl.IsZoomWindowStarted", {1});
    EXPECT_EQ(Visit("7 3 7 x"), ForWindow("7", "3") +
                                    "{ZoomControl.IsZoomWindowStarted(3, false)}"
                                    "Is window started[1] API ret[1]\n" +
                                    ForWindow("7", "x") +
                                    "{ZoomControl.IsZoomWindowStarted(-1, false)}"
                                    "Is window started[0] API ret[1]\n");
}

TEST_F(ZoomControl, ShowsWhetherAWindowIsMuted) {
    tv.Give("ZoomControl.IsZoomWindowMuted", {1});
    tv.Answer("ZoomControl.IsZoomWindowMuted", {3, -1});
    EXPECT_EQ(Visit("8 2147483647 8 0x3"), ForWindow("8", "2147483647") +
                                               "{ZoomControl.IsZoomWindowMuted(2147483647, false)}"
                                               "Is window muted[1] API ret[3]\n" +
                                               ForWindow("8", "0x3") +
                                               "{ZoomControl.IsZoomWindowMuted(0, false)}"
                                               "Is window muted[0] API ret[-1]\n");
}

TEST_F(ZoomControl, SetsTheRectanglesOfAWindow) {
    tv.Answer("ZoomControl.SetZoomWindowRect", {0});
    EXPECT_EQ(Visit("9 3 12 11 10 9 8 7 6 5 4 3 2 one"),
              ForWindow("9", "3") + Rectangles("12 11 10 9 8 7 6 5 4 3 2 one") +
                  "{ZoomControl.SetZoomWindowRect(3, {12, 11, 10, 9}, {8, 7, 6, 5}, {4, 3, 2, -1})}"
                  "Window size updated! API ret[0]\n");
}

// The first line has no closing bracket, and the list ends in a comma.
TEST_F(ZoomControl, ListsTheConnectedWindows) {
    tv.Answer("ZoomControl.GetConnectedZoomWindows", {1, -2});
    tv.GiveZoomWindows({3, 5});
    EXPECT_EQ(Visit("10"), "{menu}<10>{ZoomControl.GetConnectedZoomWindows([])}"
                           "GetConnectedZoomWindows API ret[1\nConnected window ids = [3, 5, ]\n");
    tv.GiveZoomWindows({-9});
    EXPECT_EQ(Visit("10 10"), "{menu}<10>{ZoomControl.GetConnectedZoomWindows([])}"
                              "GetConnectedZoomWindows API ret[-2\nConnected window ids = [-9, ]\n"
                              "{menu}<10>{ZoomControl.GetConnectedZoomWindows([])}"
                              "GetConnectedZoomWindows API ret[1\nConnected window ids = [-9, ]\n");
}

// The creation's result counts, and any other than 0 is a failure.
TEST_F(ZoomControl, SaysThatItsCreationFailed) {
    for (const int result : {-1, 1}) {
        tv.AnswerCreation("CreateZoomControl", result, false);
        EXPECT_EQ(TPMSScenario::Visit("19", ""), "{CreateZoomControl(1, 0)}ZoomControl interface creation failed!\n");
    }
}

TEST_F(ZoomControl, PassesMinusOneForEveryValueAtTheEndOfInput) {
    console.Type("19 5").EndInput(1).Type("99");
    EXPECT_EQ(VisitTyped(kZoomControl), ForWindow("5", "end of input") +
                                            "OnOff (1/0) = {ZoomControl.SetZoomWindow([-1], true)}"
                                            "Window set! API ret[1]\n");
}
