// Items 1, 2, 3, 6, 12, 14 and 15: reference count, sound and picture, HDMI analysis, DTV mode,
// preparation logic, crop video and captions.

#include "TPMSScenario.h"

namespace {

class ReferenceCount : public TPMSScenario {};
class MuteControl : public TPMSScenario {};
class HDMIAnalysis : public TPMSScenario {};
class DTVMode : public TPMSScenario {};
class PreparationLogic : public TPMSScenario {};
class CropVideo : public TPMSScenario {};
class Caption : public TPMSScenario {};

std::string Counted(const std::string& count) {
    return "{menu}<1>{ReferenceCount.GetReferenceCount(-1)}Reference count value is: " + count + "\n";
}

// A command of the mute test and its value.
std::string Asked(const std::string& command, const std::string& value) {
    return "{menu}<" + command + ">Off:0 / On:1 <" + value + ">";
}

// An input, a command and its call.
std::string Analysed(const std::string& input, const std::string& command, const std::string& call) {
    return " [HDMI 1~6] select num> <" + input + ">{menu}<" + command + ">{SourceControl." + call + "}";
}

// A command of the preparation logic and its call.
std::string Utility(const std::string& command, const std::string& call) {
    return "{menu}<" + command + ">{PipelineUtility." + call + "}";
}

} // namespace

TEST_F(ReferenceCount, IsPrinted) {
    tv.Give("ReferenceCount.GetReferenceCount", {3, -2147483648, 2147483647});
    EXPECT_EQ(Visit(kReferenceCount, "1 1 1"), Counted("3") + Counted("-2147483648") + Counted("2147483647"));
}

TEST_F(ReferenceCount, IsMinusOneWhenTheMiddlewareStoresNone) {
    tv.Answer("ReferenceCount.GetReferenceCount", {-7});
    EXPECT_EQ(Visit(kReferenceCount, "1"), Counted("-1"));
}

TEST_F(ReferenceCount, AsksForTheScreenOnlyAndTakesItTruncated) {
    for (const auto& [word, screen] : {std::pair{"1", "1"}, {"-1", "65535"}}) {
        Menu menu = kReferenceCount;
        menu.way = word;
        menu.opening = "Input ScreenId. Main:0, MLS:1 > <" + menu.way + ">User Input : screenId:" + screen +
                       " profile:1\n{CreateReferenceCount(1, " + screen + ")}";
        EXPECT_EQ(Visit(menu), "");
    }
}

TEST_F(ReferenceCount, UsesAnObjectWhoseCreationAnsweredAnErrorAndDestroysNone) {
    tv.AnswerCreation("CreateReferenceCount", -1, true);
    EXPECT_EQ(Visit(kReferenceCount, "1"), Counted("-1"));
    tv.AnswerCreation("CreateReferenceCount", -1, false);
    Menu menu = kReferenceCount;
    menu.closing = "{menu}<99>";
    EXPECT_EQ(Visit(menu), "");
}

TEST_F(MuteControl, MutesPictureAndSoundWithTheValueAsTyped) {
    EXPECT_EQ(Visit(kMute, "1 1 2 1 1 0 2 0"),
              Asked("1", "1") + "{AVControl.MuteVideo(1)}" + Asked("2", "1") + "{AVControl.MuteAudio(1)}" +
                  Asked("1", "0") + "{AVControl.MuteVideo(0)}" + Asked("2", "0") + "{AVControl.MuteAudio(0)}");
    EXPECT_EQ(Visit(kMute, "1 5 2 -2 1 2147483647 2 -2147483648 1 +07x 2 0x10"),
              Asked("1", "5") + "{AVControl.MuteVideo(5)}" + Asked("2", "-2") + "{AVControl.MuteAudio(-2)}" +
                  Asked("1", "2147483647") + "{AVControl.MuteVideo(2147483647)}" + Asked("2", "-2147483648") +
                  "{AVControl.MuteAudio(-2147483648)}" + Asked("1", "+07x") + "{AVControl.MuteVideo(7)}" +
                  Asked("2", "0x10") + "{AVControl.MuteAudio(0)}");
}

TEST_F(MuteControl, TakesEverySpellingOfTheFirstCommandToo) {
    std::string words;
    std::string expected;
    for (const std::string& word : SpellingsOf("1")) {
        words += word + " 1 ";
        expected += Asked(word, "1") + "{AVControl.MuteVideo(1)}";
    }
    EXPECT_EQ(Visit(kMute, words), expected);
}

TEST_F(MuteControl, DoesNothingWithoutANumberAtTheSecondPrompt) {
    std::string words;
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        for (const std::string command : {"1", "2", "99"}) {
            words += command + " " + word + " ";
            expected += Asked(command, word);
        }
    }
    EXPECT_EQ(Visit(kMute, words), expected);
    console.Type("2 0 1").EndInput(1).Type("99 0");
    EXPECT_EQ(VisitTyped(kMute), Asked("1", "end of input"));
}

TEST_F(MuteControl, IsLeftByAnyNumberAtTheSecondPrompt) {
    Menu menu = kMute;
    menu.leave = "+099 -7";
    menu.closing = Asked("+099", "-7") + "{Destroy(AVControl)}";
    EXPECT_EQ(Visit(menu), "");
}

TEST_F(MuteControl, SaysNothingWhenTheMiddlewareRefuses) {
    tv.Answer("AVControl.MuteVideo", {-1});
    tv.Answer("AVControl.MuteAudio", {0});
    EXPECT_EQ(Visit(kMute, "1 1 2 1"),
              Asked("1", "1") + "{AVControl.MuteVideo(1)}" + Asked("2", "1") + "{AVControl.MuteAudio(1)}");
}

TEST_F(MuteControl, TakesTheScreenThatWasTyped) {
    Menu menu = kMute;
    menu.way = "1";
    menu.opening = "Input ScreenId. Main:0, MLS:1 > <1>User Input : screenId:1 profile:1\n"
                   "{CreateAVControl(1, 1)}";
    EXPECT_EQ(Visit(menu), "");
}

TEST_F(MuteControl, DestroysNothingWhenNothingWasCreated) {
    tv.AnswerCreation("CreateAVControl", -1, false);
    Menu menu = kMute;
    menu.closing = Asked("99", "0");
    EXPECT_EQ(Visit(menu), "");
}

TEST_F(HDMIAnalysis, StartsAndStopsForEachInput) {
    const std::pair<std::string, std::string> sources[] = {{"1", "13"}, {"2", "14"}, {"3", "15"}, {"4", "16"},
                                                           {"5", "38"}, {"6", "39"}, {"7", "46"}, {"8", "47"}};
    std::string words;
    std::string expected;
    for (const auto& [number, source] : sources) {
        words += number + " 1 " + number + " 2 ";
        expected += Analysed(number, "1", "StartHDMIAnalysis(" + source + ")") +
                    Analysed(number, "2", "StopHDMIAnalysis(" + source + ")");
    }
    for (const std::string& number : SpellingsOf("8")) {
        words += number + " 1 ";
        expected += Analysed(number, "1", "StartHDMIAnalysis(47)");
    }
    EXPECT_EQ(Visit(kHdmiAnalysis, words), expected);
}

TEST_F(HDMIAnalysis, TakesTheFirstInputForEveryOtherWord) {
    std::vector<std::string> inputs = kNoNumbers;
    inputs.insert(inputs.end(), {"0", "9", "99", "-2", "14", "258", "0x2", "2147483647"});
    std::string words;
    std::string expected;
    for (const std::string& input : inputs) {
        words += input + " 1 ";
        expected += Analysed(input, "1", "StartHDMIAnalysis(13)");
    }
    EXPECT_EQ(Visit(kHdmiAnalysis, words), expected);
}

TEST_F(HDMIAnalysis, SaysNothingWhenTheMiddlewareRefuses) {
    tv.Answer("SourceControl.StartHDMIAnalysis", {-1});
    tv.Answer("SourceControl.StopHDMIAnalysis", {-1});
    EXPECT_EQ(Visit(kHdmiAnalysis, "1 1 1 2"),
              Analysed("1", "1", "StartHDMIAnalysis(13)") + Analysed("1", "2", "StopHDMIAnalysis(13)"));
}

TEST_F(DTVMode, IsSetByEachCommandAndNothingIsPrinted) {
    tv.Answer("ServiceNavigation.SetDTVMode", {1, -1});
    EXPECT_EQ(Visit(kDtvMode, "1 2 3 4 5 6 7 8"), "{menu}<1>{ServiceNavigation.SetDTVMode(0, true)}"
                                                  "{menu}<2>{ServiceNavigation.SetDTVMode(0, false)}"
                                                  "{menu}<3>{ServiceNavigation.SetDTVMode(1, true)}"
                                                  "{menu}<4>{ServiceNavigation.SetDTVMode(1, false)}"
                                                  "{menu}<5>{ServiceNavigation.SetDTVMode(2, true)}"
                                                  "{menu}<6>{ServiceNavigation.SetDTVMode(2, false)}"
                                                  "{menu}<7>{ServiceNavigation.SetDTVMode(3, true)}"
                                                  "{menu}<8>{ServiceNavigation.SetDTVMode(3, false)}");
}

TEST_F(PreparationLogic, CallsOneOperationForEachCommand) {
    EXPECT_EQ(Visit(kPreparationLogic, "1 2 3 4 5 6 7 8"),
              Utility("1", "RegisterForStateChange(0, \"DebugMenuTPMS\", 0)") +
                  Utility("2", "UnregisterFromStateChange(0, \"DebugMenuTPMS\")") +
                  Utility("3", "NotifyReceiverState(0, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Utility("4", "CheckPendingState(0, false)") +
                  Utility("5", "RegisterForStateChange(1, \"DebugMenuTPMS\", 0)") +
                  Utility("6", "UnregisterFromStateChange(1, \"DebugMenuTPMS\")") +
                  Utility("7", "NotifyReceiverState(1, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Utility("8", "CheckPendingState(1, false)"));
}

TEST_F(PreparationLogic, AsksForThePendingStateAnewAndPrintsNothing) {
    tv.Give("PipelineUtility.CheckPendingState", {1, 1});
    EXPECT_EQ(Visit(kPreparationLogic, "4 4 8"), Utility("4", "CheckPendingState(0, false)") +
                                                     Utility("4", "CheckPendingState(0, false)") +
                                                     Utility("8", "CheckPendingState(1, false)"));
}

TEST_F(PreparationLogic, SaysNothingWhenTheMiddlewareRefusesAndUnregistersNothingOnLeaving) {
    tv.Answer("PipelineUtility.RegisterForStateChange", {-1, 1});
    tv.Answer("PipelineUtility.NotifyReceiverState", {-1});
    EXPECT_EQ(Visit(kPreparationLogic, "1 7 5"),
              Utility("1", "RegisterForStateChange(0, \"DebugMenuTPMS\", 0)") +
                  Utility("7", "NotifyReceiverState(1, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Utility("5", "RegisterForStateChange(1, \"DebugMenuTPMS\", 0)"));
}

TEST_F(CropVideo, PassesTwoFixedRectanglesAndPrintsNothing) {
    const std::string cropped = "{CreateVideoControl(1001, 0)}"
                                "{VideoControl.SetCropVideo({540, 380, 100, 100}, {1520, 680, 400, 400})}"
                                "{Destroy(VideoControl)}";
    EXPECT_EQ(Visit("14"), cropped);
    tv.AnswerCreation("CreateVideoControl", -1, true);
    tv.Answer("VideoControl.SetCropVideo", {-1});
    EXPECT_EQ(Visit("14"), cropped) << "refused";
}

TEST_F(Caption, IsTheFlagThatTheMiddlewareStoresWhateverTheAnswer) {
    const auto shown = [](const std::string& flag) {
        return "Check Caption exist\n{CreateDataControl(1, 0)}"
               "{DataControl.CheckCaptionExist(false)}Caption exist:" +
               flag + "\n{Destroy(DataControl)}";
    };
    EXPECT_EQ(Visit("15"), shown("0")) << "nothing is stored";
    tv.Give("DataControl.CheckCaptionExist", {1, 1});
    EXPECT_EQ(Visit("15"), shown("1"));
    tv.AnswerCreation("CreateDataControl", -1, true);
    tv.Answer("DataControl.CheckCaptionExist", {-1});
    EXPECT_EQ(Visit("15"), shown("1"));
}
