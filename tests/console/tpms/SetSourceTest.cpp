// Item 7: the source of a pipeline.

#include "FakeDevice.h"
#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SetSource : public TPMSScenario {
protected:
    SetSource() { FakeDevice::SetVconf("db/tv-viewer/window_id", 4711); }
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kSetSource, words); }
};

// What `command` does with a source control of that pipeline.
std::string With(const std::string& command, const std::string& calls, const std::string& profile = "1") {
    return "{menu}<" + command + ">{CreateSourceControl(" + profile + ", 0)}" + calls + "{Destroy(SourceControl)}";
}
std::string Channel(const std::string& word) {
    return "major> <" + word + ">";
}
// A switch with everything that belongs to it.
std::string Switched(const std::string& arguments, const std::string& profile = "1",
                     const std::string& windowId = "4711") {
    return "{SourceControl.PreSetSourceA()}{SourceControl.PreSetSourceB()}"
           "{SourceControl.PreSetSourceC()}{SourceControl.SetSource(" +
           arguments + ", \"\")}{vconf_get_int(db/tv-viewer/window_id)}{CreateVideoControl(" + profile +
           ", 0)}{VideoControl.SetWindowId(" + windowId + ")}{Destroy(VideoControl)}";
}

} // namespace

TEST_F(SetSource, SwitchesTheMainPipelineToEachPlainSource) {
    EXPECT_EQ(Visit("1 2 4 5"), With("1", "{SourceControl.SetSource(0, \"\")}") +
                                    With("2", "{SourceControl.SetSource(13, \"\")}") +
                                    With("4", "{SourceControl.SetSource(7, \"\")}") +
                                    With("5", "{SourceControl.SetSource(0, 0xfa0000000002002d, \"\")}"));
}

TEST_F(SetSource, SwitchesThePipAndTheCloneToAService) {
    tv.GiveFound({{{12, -16}}});
    EXPECT_EQ(Visit("3 7"),
              With("3", Channel("7") + FindOnAntenna("0", "0", "7") + Switched("0, 0xfffffffffffffff0", "101"), "101"));
    FakeDevice::SetVconf("db/tv-viewer/window_id", -3);
    tv.GiveFound({{{12, 16}}});
    EXPECT_EQ(Visit("6 +007x"), With("6", Channel("+007x") + FindOnAntenna("0", "0", "7") +
                                              Switched("0, 0x0000000000000010", "1", "-3")));
}

// The look-up's words have no line end; the invalid id goes to the middleware.
TEST_F(SetSource, SwitchesToTheInvalidServiceForAChannelThatDoesNotExist) {
    EXPECT_EQ(Visit("3 7"), With("3",
                                 Channel("7") + FindOnAntenna("0", "0", "7", "FindService failed") +
                                     Switched("0, 0xffffffffffffffff", "101"),
                                 "101"));
}

TEST_F(SetSource, TakesTheLow16BitsOfAChannel) {
    tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Visit("6 -2"),
              With("6", Channel("-2") + FindOnAntenna("0", "0", "65534") + Switched("0, 0x0000000000000001")));
}

TEST_F(SetSource, CancelsTheCommandForAChannelThatIsNone) {
    std::string words;
    std::string expected;
    for (const std::string& word : kNoChannels) {
        words += "3 " + word + " 6 " + word + " ";
        expected += With("3", Channel(word), "101") + With("6", Channel(word));
    }
    EXPECT_EQ(Visit(words), expected);
    tv.AnswerCreation("CreateSourceControl", -1, false);
    EXPECT_EQ(Visit("6 65535"), "{menu}<6>{CreateSourceControl(1, 0)}" + Channel("65535")) << "nothing was created";
}

TEST_F(SetSource, SwitchesTheCloneToHdmiAndSaysNothingWhenTheMiddlewareRefuses) {
    EXPECT_EQ(Visit("7"), With("7", Switched("13")));
    for (const std::string operation :
         {"SourceControl.SetSource", "SourceControl.PreSetSourceA", "SourceControl.PreSetSourceB",
          "SourceControl.PreSetSourceC", "VideoControl.SetWindowId"})
        tv.Answer(operation, {-1});
    EXPECT_EQ(Visit("7"), With("7", Switched("13")));
}

TEST_F(SetSource, BindsTheWindowWithoutAKeyInTheStore) {
    FakeDevice::ClearVconf();
    EXPECT_NE(Visit("7").find("{vconf_get_int(db/tv-viewer/window_id)}{CreateVideoControl(1, 0)}"
                              "{VideoControl.SetWindowId("),
              std::string::npos);
}
