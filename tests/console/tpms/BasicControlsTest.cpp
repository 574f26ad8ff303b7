// Items 3, 6, 14 and 15: HDMI analysis, DTV mode, crop video and captions.

#include "TPMSScenario.h"

namespace {

class HDMIAnalysis : public TPMSScenario {};
class DTVMode : public TPMSScenario {};
class CropVideo : public TPMSScenario {};
class Caption : public TPMSScenario {};

// The title is that of the mute test.
const std::string kHdmiMenu = "====================================\n"
                              "\t[Test1 List - Video Mute Control]\t\n"
                              "------------------------------------\n"
                              " 1. call ISourceControl::StartHDMIAnalysis \n"
                              " 2. call ISourceControl::StopHDMIAnalysis \n"
                              "------------------------------------\n"
                              " 99 : Exit\n"
                              "====================================\n"
                              "\n";

std::string input(const std::string& word) {
    return asked(" [HDMI 1~6] select num> ", word);
}

const std::string kDtvMenu = "====================================\n"
                             "\t[Test6 List - DTV Mode Test]\t\n"
                             "------------------------------------\n"
                             " 1. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,true) \n"
                             " 2. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,false) \n"
                             " 3. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,true) \n"
                             " 4. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,false) \n"
                             " 5. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,true) \n"
                             " 6. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,false) \n"
                             " 7. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,true) \n"
                             " 8. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,false) \n"
                             "------------------------------------\n"
                             " 99 : Exit\n"
                             "====================================\n"
                             "\n";
const std::string kDtvCreated = "{CreateServiceNavigation(1, 0)}" + kDtvMenu;
const std::string kDtvDestroyed = "{Destroy(ServiceNavigation)}";

} // namespace

TEST_F(HDMIAnalysis, StartsAndStopsForEachInput) {
    const std::pair<const char*, const char*> sources[] = {{"1", "13"}, {"2", "14"}, {"3", "15"},
                                                           {"4", "16"}, {"5", "38"}, {"6", "39"},
                                                           {"7", "46"}, {"8", "47"}};
    console.type("3");
    std::string expected = "{CreateSourceControl(1, 0)}";
    for (const auto& [number, source] : sources) {
        console.type(number).type("1").type(number).type("2");
        expected += input(number) + kHdmiMenu + cmd("1") + "{SourceControl.StartHDMIAnalysis(" +
                    source + ")}" + input(number) + kHdmiMenu + cmd("2") +
                    "{SourceControl.StopHDMIAnalysis(" + source + ")}";
    }
    console.type("1 99");
    EXPECT_EQ(visitTyped("3"),
              expected + input("1") + kHdmiMenu + cmd("99") + "{Destroy(SourceControl)}");
    expectWrittenWhole(kHdmiMenu);
}

TEST_F(HDMIAnalysis, TakesTheFirstInputForEveryOtherWord) {
    console.type("3");
    std::string expected = "{CreateSourceControl(1, 0)}";
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word : {"0", "9", "99", "-2", "14", "258", "0x2", "2147483647"})
        words.push_back(word);
    for (const std::string& word : words) {
        console.type(word).type("1");
        expected += input(word) + kHdmiMenu + cmd("1") + "{SourceControl.StartHDMIAnalysis(13)}";
    }
    console.type("9 3");
    EXPECT_EQ(visitTyped("3"),
              expected + input("9") + kHdmiMenu + cmd("3") + "{Destroy(SourceControl)}");
}

TEST_F(HDMIAnalysis, TakesEverySpellingOfAnInputAndOfItsCommands) {
    console.type("3");
    std::string expected = "{CreateSourceControl(1, 0)}";
    for (const std::string& word : spellingsOf("8")) {
        console.type(word).type("1");
        expected += input(word) + kHdmiMenu + cmd("1") + "{SourceControl.StartHDMIAnalysis(47)}";
    }
    for (const std::string& word : spellingsOf("2")) {
        console.type("3").type(word);
        expected += input("3") + kHdmiMenu + cmd(word) + "{SourceControl.StopHDMIAnalysis(15)}";
    }
    console.type("1 3");
    EXPECT_EQ(visitTyped("3"),
              expected + input("1") + kHdmiMenu + cmd("3") + "{Destroy(SourceControl)}");
}

TEST_F(HDMIAnalysis, AsksForTheInputAgainAfterACommandThatIsNoNumber) {
    console.type("3");
    std::string expected = "{CreateSourceControl(1, 0)}";
    for (const std::string& word : kNoNumbers) {
        console.type("2").type(word);
        expected += input("2") + kHdmiMenu + cmd(word);
    }
    console.type("1 3");
    EXPECT_EQ(visitTyped("3"),
              expected + input("1") + kHdmiMenu + cmd("3") + "{Destroy(SourceControl)}");
}

TEST_F(HDMIAnalysis, IsLeftByEveryOtherNumber) {
    for (const std::string word : {"3", "0", "99", "98", "100", "-2", "-99", "0x1", "+3x"}) {
        Console fresh;
        FakeNorvexAPI::current().answerCreation("CreateSourceControl", -1, false);
        fresh.type("3 1 " + word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(), kEntered + kMainMenu + cmd("3") +
                                        "{CreateSourceControl(1, 0)}" + input("1") + kHdmiMenu +
                                        cmd(word) + kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(HDMIAnalysis, RepeatsAtTheEndOfInput) {
    console.type("3").endInput(2).type("99");
    EXPECT_EQ(visitTyped("3"), "{CreateSourceControl(1, 0)}" + input("<end>") + kHdmiMenu +
                                   "cmd>  [HDMI 1~6] select num> " + kHdmiMenu +
                                   "cmd> {typed 99}{Destroy(SourceControl)}");
}

TEST_F(HDMIAnalysis, SaysNothingWhenTheMiddlewareRefuses) {
    tv.answer("SourceControl.StartHDMIAnalysis", {-1});
    tv.answer("SourceControl.StopHDMIAnalysis", {-1});
    EXPECT_EQ(visit("3", "1 1 1 2 1 99"), "{CreateSourceControl(1, 0)}" + input("1") + kHdmiMenu +
                                              cmd("1") + "{SourceControl.StartHDMIAnalysis(13)}" +
                                              input("1") + kHdmiMenu + cmd("2") +
                                              "{SourceControl.StopHDMIAnalysis(13)}" + input("1") +
                                              kHdmiMenu + cmd("99") + "{Destroy(SourceControl)}");
}

TEST_F(HDMIAnalysis, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test3_HDMIAnalysis(); });
    EXPECT_EQ(console.whole(), kHdmiMenu + "{flush}");
    expectWrittenWhole(kHdmiMenu);
}

TEST_F(DTVMode, IsSetByEachCommand) {
    EXPECT_EQ(visit("6", "1 2 3 4 5 6 7 8 99"),
              kDtvCreated + cmd("1") + "{ServiceNavigation.SetDTVMode(0, true)}" + kDtvMenu +
                  cmd("2") + "{ServiceNavigation.SetDTVMode(0, false)}" + kDtvMenu + cmd("3") +
                  "{ServiceNavigation.SetDTVMode(1, true)}" + kDtvMenu + cmd("4") +
                  "{ServiceNavigation.SetDTVMode(1, false)}" + kDtvMenu + cmd("5") +
                  "{ServiceNavigation.SetDTVMode(2, true)}" + kDtvMenu + cmd("6") +
                  "{ServiceNavigation.SetDTVMode(2, false)}" + kDtvMenu + cmd("7") +
                  "{ServiceNavigation.SetDTVMode(3, true)}" + kDtvMenu + cmd("8") +
                  "{ServiceNavigation.SetDTVMode(3, false)}" + kDtvMenu + cmd("99") +
                  kDtvDestroyed);
    expectWrittenWhole(kDtvMenu);
}

TEST_F(DTVMode, TakesEverySpellingOfItsCommands) {
    console.type("6");
    std::string expected = kDtvCreated;
    for (const std::string& word : spellingsOf("8")) {
        console.type(word);
        expected += cmd(word) + "{ServiceNavigation.SetDTVMode(3, false)}" + kDtvMenu;
    }
    console.type("9");
    EXPECT_EQ(visitTyped("6"), expected + cmd("9") + kDtvDestroyed);
}

TEST_F(DTVMode, AsksAgainForACommandThatIsNoNumber) {
    console.type("6");
    std::string expected = kDtvCreated;
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += cmd(word) + kDtvMenu;
    }
    console.type("99");
    EXPECT_EQ(visitTyped("6"), expected + cmd("99") + kDtvDestroyed);
}

TEST_F(DTVMode, IsLeftByEveryOtherNumberWithoutACall) {
    for (const std::string word : {"0", "9", "99", "10", "-2", "100", "0x1", "257", "-99"}) {
        Console fresh;
        FakeNorvexAPI::current().answerCreation("CreateServiceNavigation", -1, false);
        fresh.type("6 " + word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(), kEntered + kMainMenu + cmd("6") + kDtvCreated + cmd(word) +
                                        kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(DTVMode, SaysNothingWhenTheMiddlewareRefuses) {
    tv.answer("ServiceNavigation.SetDTVMode", {-1});
    EXPECT_EQ(visit("6", "1 0"), kDtvCreated + cmd("1") +
                                     "{ServiceNavigation.SetDTVMode(0, true)}" + kDtvMenu +
                                     cmd("0") + kDtvDestroyed);
}

TEST_F(DTVMode, RepeatsItsMenuAtTheEndOfInput) {
    console.type("6").endInput(2).type("0");
    EXPECT_EQ(visitTyped("6"), kDtvCreated + "cmd> {typed <end>}" + kDtvMenu + "cmd> " + kDtvMenu +
                                   "cmd> {typed 0}" + kDtvDestroyed);
}

TEST_F(DTVMode, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test6_SetDTVMode(); });
    EXPECT_EQ(console.whole(), kDtvMenu + "{flush}");
    expectWrittenWhole(kDtvMenu);
}

TEST_F(CropVideo, PassesTwoFixedRectanglesAndPrintsNothing) {
    EXPECT_EQ(visit("14", ""),
              "{CreateVideoControl(1001, 0)}"
              "{VideoControl.SetCropVideo({540, 380, 100, 100}, {1520, 680, 400, 400})}"
              "{Destroy(VideoControl)}");
}

TEST_F(CropVideo, SaysNothingWhenTheMiddlewareRefuses) {
    tv.answerCreation("CreateVideoControl", -1, true);
    tv.answer("VideoControl.SetCropVideo", {-1});
    EXPECT_EQ(visit("14", ""),
              "{CreateVideoControl(1001, 0)}"
              "{VideoControl.SetCropVideo({540, 380, 100, 100}, {1520, 680, 400, 400})}"
              "{Destroy(VideoControl)}");
}

TEST_F(Caption, IsAbsentWhenTheMiddlewareStoresNothing) {
    EXPECT_EQ(visit("15", ""), "Check Caption exist\n"
                               "{CreateDataControl(1, 0)}{DataControl.CheckCaptionExist(false)}"
                               "Caption exist:0\n"
                               "{Destroy(DataControl)}");
}

TEST_F(Caption, IsPresentWhenTheMiddlewareSaysSo) {
    tv.give("DataControl.CheckCaptionExist", {1});
    EXPECT_EQ(visit("15", ""), "Check Caption exist\n"
                               "{CreateDataControl(1, 0)}{DataControl.CheckCaptionExist(false)}"
                               "Caption exist:1\n"
                               "{Destroy(DataControl)}");
}

TEST_F(Caption, ShowsTheFlagWhateverTheAnswer) {
    tv.answerCreation("CreateDataControl", -1, true);
    tv.answer("DataControl.CheckCaptionExist", {-1});
    tv.give("DataControl.CheckCaptionExist", {1});
    EXPECT_EQ(visit("15", ""), "Check Caption exist\n"
                               "{CreateDataControl(1, 0)}{DataControl.CheckCaptionExist(false)}"
                               "Caption exist:1\n"
                               "{Destroy(DataControl)}");
}
