// Item 7: the source of a pipeline.

#include "FakeDevice.h"
#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SetSource : public TPMSScenario {};

const std::string kMenu =
    "====================================\n"
    "\t[Test7 List - SetSource]\t\n"
    "------------------------------------\n"
    " 1. call [Main Handle] ISourceControl::SetSource(TV Source)  \n"
    " 2. call [Main Handle] ISourceControl::SetSource(HDMI1 Source)  \n"
    " 3. call [PIP Handle] ISourceControl::SetSource(TV Source) \n"
    " 4. call [Main Handle] ISourceControl::SetSource(Component1Source) \n"
    " 5. call [Main Handle] ISourceControl::SetSource(TV Source, 0xfa0000000002002d) \n"
    " 6. call [Clone Handle] ISourceControl::SetSource(TV Source) \n"
    " 7. call [Clone Handle] ISourceControl::SetSource(HDMI Source) \n"
    "------------------------------------\n"
    " 99 : Exit\n"
    "====================================\n"
    "\n";

std::string select(const std::string& word) {
    return asked(" select num> ", word);
}
std::string channel(const std::string& word) {
    return asked("major> ", word);
}
// A switch of the main pipeline to a source, by the n-th source control.
std::string plain(const std::string& source, int number = 1) {
    const std::string object =
        number == 1 ? "SourceControl" : "SourceControl#" + std::to_string(number);
    return "{CreateSourceControl(1, 0)}{" + object + ".SetSource(" + source + ", \"\")}{Destroy(" +
           object + ")}";
}
// The look-up on air within a switch to a service.
std::string lookUp(const std::string& major) {
    return "{CreateService()}{CreateServiceNavigation(1, 0)}"
           "{ServiceNavigation.GetTvMode({-1, -1})}{ServiceProfileToServiceMode(0)}"
           "{CriteriaHelper.Where(3, 0)}{CriteriaHelper.Where(23, 1)}{CriteriaHelper.Where(25, 0)}"
           "{CriteriaHelper.Where(13, " +
           major +
           ")}{CriteriaHelper.Fetch(12)}{AntennaModeToDigitalChannelType(0)}"
           "{CriteriaHelper.Where(1, 40)}{Service.FindService(true, 1)}";
}
const std::string kLookedUp =
    "{~ServiceData}{~CriteriaHelper}{Destroy(ServiceNavigation)}{Destroy(Service)}";
const std::string kPrepared =
    "{SourceControl.PreSetSourceA()}{SourceControl.PreSetSourceB()}{SourceControl.PreSetSourceC()}";
std::string bound(const std::string& profile, const std::string& windowId) {
    return "{vconf_get_int(db/tv-viewer/window_id)}{CreateVideoControl(" + profile +
           ", 0)}{VideoControl.SetWindowId(" + windowId + ")}{Destroy(VideoControl)}";
}

const std::string kDone = kMenu + select("99");

} // namespace

TEST_F(SetSource, SwitchesTheMainPipelineToEachPlainSource) {
    EXPECT_EQ(visit("7", "1 2 4 99"), kMenu + select("1") + plain("0") + kMenu + select("2") +
                                          plain("13", 2) + kMenu + select("4") + plain("7", 3) +
                                          kDone);
    expectWrittenWhole(kMenu);
}

TEST_F(SetSource, SwitchesTheMainPipelineToTheTunerForEveryOtherWord) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word :
         {"12", "0", "8", "98", "100", "-2", "-99", "0x2", "2147483647", "-2147483648", "258"})
        words.push_back(word);
    console.type("7");
    std::string expected;
    int number = 0;
    for (const std::string& word : words) {
        console.type(word);
        expected += kMenu + select(word) + plain("0", ++number);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("7"), expected + kDone);
}

TEST_F(SetSource, TakesEverySpellingOfItsCommands) {
    console.type("7");
    std::string expected;
    int number = 0;
    for (const std::string& word : spellingsOf("4")) {
        console.type(word);
        expected += kMenu + select(word) + plain("7", ++number);
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("7"), expected + kMenu + select("+099x"));
}

TEST_F(SetSource, PassesTheFixedServiceUnchanged) {
    EXPECT_EQ(visit("7", "5 99"), kMenu + select("5") +
                                      "{CreateSourceControl(1, 0)}"
                                      "{SourceControl.SetSource(0, 0xfa0000000002002d, \"\")}"
                                      "{Destroy(SourceControl)}" +
                                      kDone);
}

TEST_F(SetSource, SwitchesThePipToAService) {
    FakeDevice::setVconf("db/tv-viewer/window_id", 4711);
    tv.giveFound({{{12, -16}}});
    EXPECT_EQ(visit("7", "3 7 99"), kMenu + select("3") + "{CreateSourceControl(101, 0)}" +
                                        channel("7") + lookUp("7") + kLookedUp + kPrepared +
                                        "{SourceControl.SetSource(0, 0xfffffffffffffff0, \"\")}" +
                                        bound("101", "4711") + "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, SwitchesTheCloneToAService) {
    FakeDevice::setVconf("db/tv-viewer/window_id", -3);
    tv.giveFound({{{12, 16}}});
    EXPECT_EQ(visit("7", "6 +007x 99"),
              kMenu + select("6") + "{CreateSourceControl(1, 0)}" + channel("+007x") + lookUp("7") +
                  kLookedUp + kPrepared + "{SourceControl.SetSource(0, 0x0000000000000010, \"\")}" +
                  bound("1", "-3") + "{Destroy(SourceControl)}" + kDone);
}

// The look-up's words have no line end; the invalid id goes to the middleware.
TEST_F(SetSource, SwitchesToTheInvalidServiceForAChannelThatDoesNotExist) {
    FakeDevice::setVconf("db/tv-viewer/window_id", 1);
    EXPECT_EQ(visit("7", "3 7 99"), kMenu + select("3") + "{CreateSourceControl(101, 0)}" +
                                        channel("7") + lookUp("7") + "FindService failed" +
                                        kLookedUp + kPrepared +
                                        "{SourceControl.SetSource(0, 0xffffffffffffffff, \"\")}" +
                                        bound("101", "1") + "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, SwitchesTheCloneToHdmi) {
    FakeDevice::setVconf("db/tv-viewer/window_id", 9);
    EXPECT_EQ(visit("7", "7 99"), kMenu + select("7") + "{CreateSourceControl(1, 0)}" + kPrepared +
                                      "{SourceControl.SetSource(13, \"\")}" + bound("1", "9") +
                                      "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, CancelsTheCommandForAChannelThatIsNone) {
    for (const std::string command : {"3", "6"}) {
        const std::string profile = command == "3" ? "101" : "1";
        std::vector<std::string> words = kNoNumbers;
        for (const std::string word : {"65535", "+65535", "065535x", "131071", "2147483647"})
            words.push_back(word);
        for (const std::string& word : words) {
            Console fresh;
            fresh.type(command).type(word).type("99");
            fresh.run([this] { menus.m_Start_Test7_SetSource(); });
            const std::string dialogue = fresh.dialogue();
            EXPECT_TRUE(dialogue.starts_with(kMenu + select(command) + "{CreateSourceControl(" +
                                             profile + ", 0)}" + channel(word) +
                                             "{Destroy(SourceControl"))
                << dialogue;
            EXPECT_TRUE(dialogue.ends_with(")}" + kDone)) << dialogue;
            EXPECT_EQ(fresh.calls().size(), 2U);
        }
    }
}

TEST_F(SetSource, CreatesAndDestroysAPipSourceControlFor65535) {
    EXPECT_EQ(visit("7", "3 65535 99"), kMenu + select("3") + "{CreateSourceControl(101, 0)}" +
                                            channel("65535") + "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, DestroysNothingWhenNothingWasCreatedForAChannelThatIsNone) {
    tv.answerCreation("CreateSourceControl", -1, false);
    EXPECT_EQ(visit("7", "6 65535 99"),
              kMenu + select("6") + "{CreateSourceControl(1, 0)}" + channel("65535") + kDone);
}

TEST_F(SetSource, TakesTheLow16BitsOfAChannel) {
    FakeDevice::setVconf("db/tv-viewer/window_id", 1);
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("7", "6 -2 99"), kMenu + select("6") + "{CreateSourceControl(1, 0)}" +
                                         channel("-2") + lookUp("65534") + kLookedUp + kPrepared +
                                         "{SourceControl.SetSource(0, 0x0000000000000001, \"\")}" +
                                         bound("1", "1") + "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, BindsTheWindowWithoutAKeyInTheStore) {
    const std::string dialogue = visit("7", "7 99");
    EXPECT_NE(dialogue.find("{vconf_get_int(db/tv-viewer/window_id)}{CreateVideoControl(1, 0)}"
                            "{VideoControl.SetWindowId("),
              std::string::npos)
        << dialogue;
}

TEST_F(SetSource, SaysNothingWhenTheMiddlewareRefuses) {
    FakeDevice::setVconf("db/tv-viewer/window_id", 9);
    for (const std::string operation :
         {"SourceControl.SetSource", "SourceControl.PreSetSourceA", "SourceControl.PreSetSourceB",
          "SourceControl.PreSetSourceC", "VideoControl.SetWindowId"})
        tv.answer(operation, {-1});
    EXPECT_EQ(visit("7", "7 99"), kMenu + select("7") + "{CreateSourceControl(1, 0)}" + kPrepared +
                                      "{SourceControl.SetSource(13, \"\")}" + bound("1", "9") +
                                      "{Destroy(SourceControl)}" + kDone);
}

TEST_F(SetSource, SwitchesToTheTunerAgainAndAgainAtTheEndOfInput) {
    console.type("7").endInput(2, " select num> ").type("99");
    EXPECT_EQ(visitTyped("7"), kMenu + select("<end>") + plain("0") + kMenu + " select num> " +
                                   plain("0", 2) + kMenu + " select num> {typed 99}");
}

TEST_F(SetSource, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test7_SetSource(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}
