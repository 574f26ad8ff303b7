// Item 16: the preview source.

#include "TPMSScenario.h"

namespace {

class SetPreviewSource : public TPMSScenario {};

const std::string kMenu =
    "====================================\n"
    "\t[Test17 List - SetPreviewSource]\t\n"
    "------------------------------------\n"
    " 1. call [Main Handle] ISourceControl::SetPreviewSource(ESource)  \n"
    " 2. call [Main Handle] ISourceControl::SetPreviewSource(ESource, Major)  \n"
    "------------------------------------\n"
    " 99 : Exit\n"
    "====================================\n"
    "\n";

std::string select(const std::string& word) {
    return asked(" select num> ", word);
}
std::string source(const std::string& word) {
    return asked("Enter ESource (TV=0, HDMI1=13)> ", word);
}
std::string channel(const std::string& word) {
    return asked("Enter major (int)> ", word);
}
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
// A switch with `arguments`, by the n-th source control.
std::string called(const std::string& arguments, int number = 1) {
    const std::string object =
        number == 1 ? "SourceControl" : "SourceControl#" + std::to_string(number);
    return "{CreateSourceControl(1, 0)}{" + object + ".SetPreviewSource(" + arguments +
           ", \"\")}{Destroy(" + object + ")}";
}
const std::string kSucceeded = "Succesfully called SetPreviewSource, ret=1\n";
const std::string kDone = kMenu + select("99");

} // namespace

TEST_F(SetPreviewSource, SwitchesToASource) {
    EXPECT_EQ(visit("16", "1 13 99"),
              kMenu + select("1") + source("13") + called("13") + kSucceeded + kDone);
    expectWrittenWhole(kMenu);
}

TEST_F(SetPreviewSource, TakesSourcesFrom0To47) {
    console.type("16");
    std::string expected;
    for (int number = 0; number <= 47; ++number) {
        console.type("1").type(std::to_string(number));
        expected += kMenu + select("1") + source(std::to_string(number)) +
                    called(std::to_string(number), number + 1) + kSucceeded;
    }
    console.type("99");
    EXPECT_EQ(visitTyped("16"), expected + kDone);
}

TEST_F(SetPreviewSource, RefusesSourcesOutsideOf0To47) {
    console.type("16");
    std::string expected;
    const std::pair<const char*, const char*> sources[] = {{"48", "48"},
                                                           {"-2", "-2"},
                                                           {"100", "100"},
                                                           {"2147483647", "2147483647"},
                                                           {"-2147483648", "-2147483648"},
                                                           {"+048x", "48"},
                                                           {"256", "256"},
                                                           {"65549", "65549"}};
    for (const auto& [word, number] : sources) {
        for (const std::string command : {"1", "2"}) {
            console.type(command).type(word);
            expected += kMenu + select(command) + source(word) + "Invalid source " + number +
                        ". Valid values (0, 47)\n";
        }
    }
    console.type("99");
    EXPECT_EQ(visitTyped("16"), expected + kDone);
}

TEST_F(SetPreviewSource, GoesBackSilentlyForASourceThatIsNoNumber) {
    console.type("16");
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        console.type("1").type(word).type("2").type(word);
        expected += kMenu + select("1") + source(word) + kMenu + select("2") + source(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("16"), expected + kDone);
}

TEST_F(SetPreviewSource, IgnoresOtherCommands) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word : {"0", "3", "98", "100", "-2", "-99", "0x1", "257"})
        words.push_back(word);
    console.type("16");
    std::string expected;
    for (const std::string& word : words) {
        console.type(word);
        expected += kMenu + select(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("16"), expected + kDone);
}

TEST_F(SetPreviewSource, TakesEverySpellingOfItsNumbers) {
    console.type("16");
    std::string expected;
    int number = 0;
    for (const std::string& word : spellingsOf("1")) {
        console.type(word).type(word);
        expected += kMenu + select(word) + source(word) + called("1", ++number) + kSucceeded;
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("16"), expected + kMenu + select("+099x"));
}

TEST_F(SetPreviewSource, TakesOnlyAnAnswerOf1ForSuccess) {
    tv.answer("SourceControl.SetPreviewSource", {2, 0, -1, 2147483647});
    EXPECT_EQ(visit("16", "1 0 1 0 1 0 1 0 99"),
              kMenu + select("1") + source("0") + called("0") +
                  "Fail to SetPreviewSource, ret=2\n" + kMenu + select("1") + source("0") +
                  called("0", 2) + "Fail to SetPreviewSource, ret=0\n" + kMenu + select("1") +
                  source("0") + called("0", 3) + "Fail to SetPreviewSource, ret=-1\n" + kMenu +
                  select("1") + source("0") + called("0", 4) +
                  "Fail to SetPreviewSource, ret=2147483647\n" + kDone);
}

TEST_F(SetPreviewSource, SwitchesToAService) {
    tv.giveFound({{{12, -16}}});
    EXPECT_EQ(visit("16", "2 13 7 99"), kMenu + select("2") + source("13") + channel("7") +
                                            lookUp("7") + kLookedUp +
                                            called("13, 0xfffffffffffffff0") + kSucceeded + kDone);
}

TEST_F(SetPreviewSource, TellsTheAnswerToASwitchToAService) {
    tv.giveFound({{{12, 1}}});
    tv.answer("SourceControl.SetPreviewSource", {-2147483647});
    EXPECT_EQ(visit("16", "2 0 7 99"), kMenu + select("2") + source("0") + channel("7") +
                                           lookUp("7") + kLookedUp +
                                           called("0, 0x0000000000000001") +
                                           "Fail to SetPreviewSource, ret=-2147483647\n" + kDone);
}

// The look-up's words and the channel stand on one line.
TEST_F(SetPreviewSource, TellsWhichChannelDoesNotExist) {
    EXPECT_EQ(visit("16", "2 0 7 99"), kMenu + select("2") + source("0") + channel("7") +
                                           lookUp("7") + "FindService failed" + kLookedUp +
                                           " for major=7\n" + kDone);
    EXPECT_NE(console.transcript().find("FindService failed for major=7\n"), std::string::npos);
}

TEST_F(SetPreviewSource, TellsTheChannelAsANumberAndLooksForItsLow16Bits) {
    EXPECT_EQ(visit("16", "2 0 -2 99"), kMenu + select("2") + source("0") + channel("-2") +
                                            lookUp("65534") + "FindService failed" + kLookedUp +
                                            " for major=-2\n" + kDone);
}

TEST_F(SetPreviewSource, LooksForChannel65535) {
    EXPECT_EQ(visit("16", "2 0 65535 99"), kMenu + select("2") + source("0") + channel("65535") +
                                               lookUp("65535") + "FindService failed" + kLookedUp +
                                               " for major=65535\n" + kDone);
}

TEST_F(SetPreviewSource, TellsLargeChannelsWhole) {
    tv.giveFound({{{13, 7}}});
    const std::string dialogue = visit("16", "2 0 +065543x 99");
    EXPECT_NE(dialogue.find(channel("+065543x") + lookUp("7") + "{TCApiPrintMessage("),
              std::string::npos)
        << dialogue;
    EXPECT_TRUE(dialogue.ends_with(kLookedUp + " for major=65543\n" + kDone)) << dialogue;
}

TEST_F(SetPreviewSource, GoesBackSilentlyForAChannelThatIsNoNumber) {
    console.type("16");
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        console.type("2 0").type(word);
        expected += kMenu + select("2") + source("0") + channel(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("16"), expected + kDone);
}

TEST_F(SetPreviewSource, RepeatsItsMenuAtTheEndOfInput) {
    console.type("16").endInput(2, " select num> ").type("99");
    EXPECT_EQ(visitTyped("16"), kMenu + select("<end>") + kMenu + " select num> " + kMenu +
                                    " select num> {typed 99}");
}

TEST_F(SetPreviewSource, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test17_SetPrevieSource(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}
