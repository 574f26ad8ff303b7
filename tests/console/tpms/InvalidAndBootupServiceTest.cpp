// Items 20 and 21: the invalid service and the boot-up service.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class InvalidService : public TPMSScenario {};
class BootupService : public TPMSScenario {};

const std::string kMenu = "====================================\n"
                          "\t[Test20 List - InvalidServiceTest]\t\n"
                          "------------------------------------\n"
                          " 1. SetService(INVALID_SERVICE_ID)\n"
                          " 2. SetSource(INVALID_SERVICE_ID)\n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n"
                          "\n";
const std::string kBegun = "{CreateServiceNavigation(1, 0)}{CreateSourceControl(1, 0)}";
const std::string kDestroyed = "{Destroy(ServiceNavigation)}{Destroy(SourceControl)}";
const std::string kDone = kMenu + cmd("99") + kDestroyed;
const std::string kSetService = "{ServiceNavigation.SetService(0xffffffffffffffff, 0, 0, \"\")}";
const std::string kSetSource = "{SourceControl.SetSource(0, 0xffffffffffffffff, \"\")}";

std::string channel(const std::string& word) {
    return asked("major> ", word);
}
const std::string kNavigation = "{CreateServiceNavigation(1, 0)}";
std::string booted(const std::string& serviceId) {
    return "{ServiceNavigation.SetBootupService(" + serviceId + ", {-1, -1}, 0)}";
}

} // namespace

TEST_F(InvalidService, IsHandedToBothSwitchesAndNothingIsPrinted) {
    EXPECT_EQ(visit("20", "1 2 1 2 99"), kBegun + kMenu + cmd("1") + kSetService + kMenu +
                                             cmd("2") + kSetSource + kMenu + cmd("1") +
                                             kSetService + kMenu + cmd("2") + kSetSource + kDone);
    expectWrittenWhole(kMenu);
}

TEST_F(InvalidService, PrintsNothingWhenTheMiddlewareRefuses) {
    tv.answer("ServiceNavigation.SetService", {-1});
    tv.answer("SourceControl.SetSource", {-1});
    EXPECT_EQ(visit("20", "1 2 99"),
              kBegun + kMenu + cmd("1") + kSetService + kMenu + cmd("2") + kSetSource + kDone);
}

TEST_F(InvalidService, SaysThatItDoesNotSupportOtherNumbers) {
    console.type("20");
    std::string expected = kBegun;
    for (const std::string word :
         {"5", "0", "3", "98", "100", "-2", "-99", "0x1", "2147483647", "-2147483648", "257"}) {
        console.type(word);
        expected += kMenu + cmd(word) + "unsupported command: -1\n";
    }
    console.type("99");
    EXPECT_EQ(visitTyped("20"), expected + kDone);
}

TEST_F(InvalidService, ShowsItsMenuAgainForWordsThatAreNoNumbers) {
    console.type("20");
    std::string expected = kBegun;
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += kMenu + cmd(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("20"), expected + kDone);
}

TEST_F(InvalidService, TakesEverySpellingOfItsCommands) {
    console.type("20");
    std::string expected = kBegun;
    for (const std::string& word : spellingsOf("2")) {
        console.type(word);
        expected += kMenu + cmd(word) + kSetSource;
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("20"), expected + kMenu + cmd("+099x") + kDestroyed);
}

TEST_F(InvalidService, SaysThatTheNavigationCouldNotBeCreated) {
    tv.answerCreation("CreateServiceNavigation", -1, false);
    EXPECT_EQ(visit("20", ""), "{CreateServiceNavigation(1, 0)}CreateServiceNavigation failed\n");
}

// The navigation is kept.
TEST_F(InvalidService, SaysThatTheSourceControlCouldNotBeCreated) {
    tv.answerCreation("CreateSourceControl", 1, false);
    EXPECT_EQ(visit("20", ""), kBegun + "CreateSourceControl failed\n");
    kept = {"ServiceNavigation"};
}

TEST_F(InvalidService, AnswersWhetherItRan) {
    bool ran = false;
    console.type("99").run([&] { ran = menus.m_InvalidServiceTest(); });
    EXPECT_TRUE(ran);
    tv.answerCreation("CreateServiceNavigation", -1, false);
    console.run([&] { ran = menus.m_InvalidServiceTest(); });
    EXPECT_FALSE(ran);
    ran = true;
    tv.answerCreation("CreateSourceControl", -1, false);
    console.run([&] { ran = menus.m_InvalidServiceTest(); });
    EXPECT_FALSE(ran);
    kept = {"ServiceNavigation#2"};
}

TEST_F(InvalidService, RepeatsItsMenuAtTheEndOfInput) {
    console.type("20").endInput(2).type("99");
    EXPECT_EQ(visitTyped("20"), kBegun + kMenu + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 99}" + kDestroyed);
}

TEST_F(BootupService, IsSet) {
    tv.giveFound({{{12, -16}}});
    EXPECT_EQ(visit("21", "7"), kNavigation + channel("7") + findByMajor("Service", "7") +
                                    foundByMajor("Service") + booted("0xfffffffffffffff0") +
                                    "{Destroy(ServiceNavigation)}");
}

TEST_F(BootupService, TakesEverySpellingOfAChannel) {
    for (const std::string& word : spellingsOf("7")) {
        Console fresh;
        tv.giveFound({{{12, 1}}});
        bool set = false;
        fresh.type(word).run([&] { set = menus.m_SetBootupService(); });
        EXPECT_TRUE(set);
        EXPECT_NE(fresh.dialogue().find("{CriteriaHelper.Where(13, 7)}"), std::string::npos);
    }
}

TEST_F(BootupService, TakesTheLow16BitsOfAChannel) {
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("21", "-2"), kNavigation + channel("-2") + findByMajor("Service", "65534") +
                                     foundByMajor("Service") + booted("0x0000000000000001") +
                                     "{Destroy(ServiceNavigation)}");
}

TEST_F(BootupService, IsTheInvalidOneForAChannelThatDoesNotExist) {
    EXPECT_EQ(visit("21", "7"), kNavigation + channel("7") + findByMajor("Service", "7") +
                                    "FindService failed" + foundByMajor("Service") +
                                    booted("0xffffffffffffffff") + "{Destroy(ServiceNavigation)}");
}

// Both words and the menu stand on one line; the navigation is kept.
TEST_F(BootupService, SaysThatTheInvalidOneWasRefused) {
    tv.answer("ServiceNavigation.SetBootupService", {-1});
    EXPECT_EQ(visit("21", "7"), kNavigation + channel("7") + findByMajor("Service", "7") +
                                    "FindService failed" + foundByMajor("Service") +
                                    booted("0xffffffffffffffff") + " SetBootupService failed!");
    EXPECT_NE(console.transcript().find("major> FindService failed SetBootupService failed!==="),
              std::string::npos);
    kept = {"ServiceNavigation"};
}

TEST_F(BootupService, TakesAnAnswerOf0ForAFailure) {
    tv.giveFound({{{12, 1}}});
    tv.answer("ServiceNavigation.SetBootupService", {0});
    EXPECT_EQ(visit("21", "7"), kNavigation + channel("7") + findByMajor("Service", "7") +
                                    foundByMajor("Service") + booted("0x0000000000000001") +
                                    " SetBootupService failed!");
    kept = {"ServiceNavigation"};
}

TEST_F(BootupService, TakesEveryAnswerAbove0ForSuccess) {
    tv.giveFound({{{12, 1}}});
    tv.answer("ServiceNavigation.SetBootupService", {2});
    EXPECT_EQ(visit("21", "7"), kNavigation + channel("7") + findByMajor("Service", "7") +
                                    foundByMajor("Service") + booted("0x0000000000000001") +
                                    "{Destroy(ServiceNavigation)}");
}

TEST_F(BootupService, GoesBackSilentlyForChannel65535) {
    EXPECT_EQ(visit("21", "65535"), kNavigation + channel("65535"));
    kept = {"ServiceNavigation"};
}

TEST_F(BootupService, GoesBackSilentlyForAChannelThatIsNone) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word : {"+65535", "065535x", "131071", "2147483647", "-65537"})
        words.push_back(word);
    for (const std::string& word : words) {
        Console fresh;
        bool set = true;
        fresh.type(word).run([&] { set = menus.m_SetBootupService(); });
        EXPECT_FALSE(set) << word;
        EXPECT_EQ(fresh.dialogue(), kNavigation + channel(word));
    }
    kept = tv.kept();
    EXPECT_EQ(kept.size(), words.size());
}

TEST_F(BootupService, SaysThatTheNavigationCouldNotBeCreated) {
    tv.answerCreation("CreateServiceNavigation", 1, false);
    EXPECT_EQ(visit("21", ""), kNavigation + "CreateServiceNavigation failed\n");
}

TEST_F(BootupService, AnswersWhetherItWasSet) {
    bool set = false;
    console.type("7 7 65535").run([&] { set = menus.m_SetBootupService(); });
    EXPECT_TRUE(set);
    tv.answer("ServiceNavigation.SetBootupService", {-1});
    console.run([&] { set = menus.m_SetBootupService(); });
    EXPECT_FALSE(set);
    set = true;
    console.run([&] { set = menus.m_SetBootupService(); });
    EXPECT_FALSE(set);
    set = true;
    tv.answerCreation("CreateServiceNavigation", -1, false);
    console.run([&] { set = menus.m_SetBootupService(); });
    EXPECT_FALSE(set);
    kept = {"ServiceNavigation#2", "ServiceNavigation#3"};
}

TEST_F(BootupService, GoesBackSilentlyAtTheEndOfInput) {
    console.type("21").endInput(2).type("99");
    enter();
    EXPECT_EQ(console.dialogue(), kEntered + kMainMenu + cmd("21") + kNavigation +
                                      channel("<end>") + kMainMenu + "cmd> " + kMainMenu +
                                      "cmd> {typed 99}" + kLeft);
    kept = {"ServiceNavigation"};
}
