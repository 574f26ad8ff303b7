// Items 1 and 2: the reference count, sound and picture.

#include "TPMSScenario.h"

namespace {

class ReferenceCount : public TPMSScenario {};
class MuteControl : public TPMSScenario {};

const std::string kScreen = "Input ScreenId. Main:0, MLS:1 > ";
const std::string kScreen0 = asked(kScreen, "0") + "User Input : screenId:0 profile:1\n";

const std::string kReferenceMenu = "====================================\n"
                                   "\t[Test1 List - Reference Count]\t\n"
                                   "------------------------------------\n"
                                   " 1. Call GetReferenceCount() \n"
                                   "------------------------------------\n"
                                   " 99 : Exit\n"
                                   "====================================\n"
                                   "\n";
const std::string kCreated = kScreen0 + "{CreateReferenceCount(1, 0)}" + kReferenceMenu;

const std::string kMuteMenu = "====================================\n"
                              "\t[Test1 List - Video Mute Control]\t\n"
                              "------------------------------------\n"
                              " 1. call IAVControl::MuteVudio \n"
                              " 2. call IAVControl::MuteAudio \n"
                              "------------------------------------\n"
                              " 99 : Exit\n"
                              "====================================\n"
                              "\n";
const std::string kMuteCreated = kScreen0 + "{CreateAVControl(1, 0)}" + kMuteMenu;
const std::string kMuteLeft = cmd("99") + "Off:0 / On:1 {typed 0}{Destroy(AVControl)}";

std::string value(const std::string& word) {
    return asked("Off:0 / On:1 ", word);
}

} // namespace

TEST_F(ReferenceCount, IsPrinted) {
    tv.give("ReferenceCount.GetReferenceCount", {3, -2147483648, 2147483647});
    EXPECT_EQ(visit("1", "0 1 1 1 99"),
              kCreated + cmd("1") +
                  "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: 3\n" +
                  kReferenceMenu + cmd("1") +
                  "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: -2147483648\n" +
                  kReferenceMenu + cmd("1") +
                  "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: 2147483647\n" +
                  kReferenceMenu + cmd("99") + "{Destroy(ReferenceCount)}");
    expectWrittenWhole(kReferenceMenu);
}

TEST_F(ReferenceCount, IsMinusOneWhenTheMiddlewareStoresNone) {
    tv.answer("ReferenceCount.GetReferenceCount", {-7});
    EXPECT_EQ(visit("1", "0 1 99"),
              kCreated + cmd("1") +
                  "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: -1\n" +
                  kReferenceMenu + cmd("99") + "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, AsksForTheScreenOnly) {
    EXPECT_EQ(visit("1", "1 99"), asked(kScreen, "1") + "User Input : screenId:1 profile:1\n" +
                                      "{CreateReferenceCount(1, 1)}" + kReferenceMenu + cmd("99") +
                                      "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, TakesTheTruncatedScreen) {
    EXPECT_EQ(visit("1", "-1 99"), asked(kScreen, "-1") +
                                       "User Input : screenId:65535 profile:1\n" +
                                       "{CreateReferenceCount(1, 65535)}" + kReferenceMenu +
                                       cmd("99") + "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, ShowsItsMenuAgainWithoutAMessageForEveryOtherWord) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word : {"2", "0", "98", "100", "-99", "-2", "0x1", "10"})
        words.push_back(word);
    console.type("1 0");
    std::string expected = kCreated;
    for (const std::string& word : words) {
        console.type(word);
        expected += cmd(word) + kReferenceMenu;
    }
    console.type("99");
    EXPECT_EQ(visitTyped("1"), expected + cmd("99") + "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, TakesEverySpellingOfItsCommands) {
    console.type("1 0");
    std::string expected = kCreated;
    for (const std::string& word : spellingsOf("1")) {
        console.type(word);
        expected += cmd(word) +
                    "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: -1\n" +
                    kReferenceMenu;
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("1"), expected + cmd("+099x") + "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, DestroysNothingWhenNothingWasCreated) {
    tv.answerCreation("CreateReferenceCount", -1, false);
    EXPECT_EQ(visit("1", "0 99"), kCreated + cmd("99"));
}

TEST_F(ReferenceCount, UsesAnObjectWhoseCreationAnsweredAnError) {
    tv.answerCreation("CreateReferenceCount", -1, true);
    EXPECT_EQ(visit("1", "0 1 99"),
              kCreated + cmd("1") +
                  "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: -1\n" +
                  kReferenceMenu + cmd("99") + "{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, RepeatsItsMenuAtTheEndOfInput) {
    console.type("1 0").endInput(2).type("99");
    EXPECT_EQ(visitTyped("1"), kCreated + "cmd> {typed <end>}" + kReferenceMenu + "cmd> " +
                                   kReferenceMenu + "cmd> {typed 99}{Destroy(ReferenceCount)}");
}

TEST_F(ReferenceCount, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test1_ReferenceCount(); });
    EXPECT_EQ(console.whole(), kReferenceMenu + "{flush}");
    expectWrittenWhole(kReferenceMenu);
}

TEST_F(MuteControl, MutesPictureAndSound) {
    EXPECT_EQ(visit("2", "0 1 1 2 1 1 0 2 0 99 0"),
              kMuteCreated + cmd("1") + value("1") + "{AVControl.MuteVideo(1)}" + kMuteMenu +
                  cmd("2") + value("1") + "{AVControl.MuteAudio(1)}" + kMuteMenu + cmd("1") +
                  value("0") + "{AVControl.MuteVideo(0)}" + kMuteMenu + cmd("2") + value("0") +
                  "{AVControl.MuteAudio(0)}" + kMuteMenu + kMuteLeft);
    expectWrittenWhole(kMuteMenu);
}

TEST_F(MuteControl, PassesTheValueAsTyped) {
    EXPECT_EQ(visit("2", "0 1 5 2 -2 1 2147483647 2 -2147483648 1 +07x 2 0x10 99 0"),
              kMuteCreated + cmd("1") + value("5") + "{AVControl.MuteVideo(5)}" + kMuteMenu +
                  cmd("2") + value("-2") + "{AVControl.MuteAudio(-2)}" + kMuteMenu + cmd("1") +
                  value("2147483647") + "{AVControl.MuteVideo(2147483647)}" + kMuteMenu + cmd("2") +
                  value("-2147483648") + "{AVControl.MuteAudio(-2147483648)}" + kMuteMenu +
                  cmd("1") + value("+07x") + "{AVControl.MuteVideo(7)}" + kMuteMenu + cmd("2") +
                  value("0x10") + "{AVControl.MuteAudio(0)}" + kMuteMenu + kMuteLeft);
}

TEST_F(MuteControl, IsNotLeftWithoutANumberAtTheSecondPrompt) {
    EXPECT_EQ(visit("2", "0 99 abc 99 0"),
              kMuteCreated + cmd("99") + value("abc") + kMuteMenu + kMuteLeft);
}

TEST_F(MuteControl, IsLeftByAnyNumberAtTheSecondPrompt) {
    EXPECT_EQ(visit("2", "0 +099 -7"),
              kMuteCreated + cmd("+099") + value("-7") + "{Destroy(AVControl)}");
}

TEST_F(MuteControl, DoesNothingWithoutANumberAtTheSecondPrompt) {
    console.type("2 0");
    std::string expected = kMuteCreated;
    for (const std::string& word : kNoNumbers) {
        console.type("1").type(word).type("2").type(word);
        expected += cmd("1") + value(word) + kMuteMenu + cmd("2") + value(word) + kMuteMenu;
    }
    console.type("99 0");
    EXPECT_EQ(visitTyped("2"), expected + kMuteLeft);
}

TEST_F(MuteControl, AsksAgainForACommandThatIsNoNumber) {
    console.type("2 0");
    std::string expected = kMuteCreated;
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += cmd(word) + kMuteMenu;
    }
    console.type("99 0");
    EXPECT_EQ(visitTyped("2"), expected + kMuteLeft);
}

TEST_F(MuteControl, AsksForTheValueOfCommandsThatItDoesNotKnow) {
    console.type("2 0");
    std::string expected = kMuteCreated;
    for (const std::string word : {"0", "3", "98", "100", "-2", "-99", "0x1", "2147483647"}) {
        console.type(word).type("1");
        expected += cmd(word) + value("1") + kMuteMenu;
    }
    console.type("99 0");
    EXPECT_EQ(visitTyped("2"), expected + kMuteLeft);
}

TEST_F(MuteControl, TakesEverySpellingOfItsCommands) {
    console.type("2 0");
    std::string expected = kMuteCreated;
    for (const std::string& word : spellingsOf("1")) {
        console.type(word).type("1");
        expected += cmd(word) + value("1") + "{AVControl.MuteVideo(1)}" + kMuteMenu;
    }
    for (const std::string& word : spellingsOf("2")) {
        console.type(word).type("0");
        expected += cmd(word) + value("0") + "{AVControl.MuteAudio(0)}" + kMuteMenu;
    }
    console.type("99 0");
    EXPECT_EQ(visitTyped("2"), expected + kMuteLeft);
}

TEST_F(MuteControl, SaysNothingWhenTheMiddlewareRefuses) {
    tv.answer("AVControl.MuteVideo", {-1});
    tv.answer("AVControl.MuteAudio", {0});
    EXPECT_EQ(visit("2", "0 1 1 2 1 99 0"),
              kMuteCreated + cmd("1") + value("1") + "{AVControl.MuteVideo(1)}" + kMuteMenu +
                  cmd("2") + value("1") + "{AVControl.MuteAudio(1)}" + kMuteMenu + kMuteLeft);
}

TEST_F(MuteControl, TakesTheScreenThatWasTyped) {
    EXPECT_EQ(visit("2", "1 99 0"),
              asked(kScreen, "1") + "User Input : screenId:1 profile:1\n{CreateAVControl(1, 1)}" +
                  kMuteMenu + kMuteLeft);
}

TEST_F(MuteControl, DestroysNothingWhenNothingWasCreated) {
    tv.answerCreation("CreateAVControl", -1, false);
    EXPECT_EQ(visit("2", "0 99 0"), kMuteCreated + cmd("99") + value("0"));
}

TEST_F(MuteControl, RepeatsItsMenuAtTheEndOfInput) {
    console.type("2 0").endInput(2).type("99 0");
    EXPECT_EQ(visitTyped("2"), kMuteCreated + "cmd> {typed <end>}" + kMuteMenu + "cmd> " +
                                   kMuteMenu + "cmd> {typed 99}" + value("0") +
                                   "{Destroy(AVControl)}");
}

TEST_F(MuteControl, DoesNothingWhenTheInputEndsAtTheSecondPrompt) {
    console.type("2 0 1").endInput(1).type("99 0");
    EXPECT_EQ(visitTyped("2"), kMuteCreated + cmd("1") + value("<end>") + kMuteMenu + kMuteLeft);
}

TEST_F(MuteControl, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test2_MuteControl(); });
    EXPECT_EQ(console.whole(), kMuteMenu + "{flush}");
    expectWrittenWhole(kMuteMenu);
}
