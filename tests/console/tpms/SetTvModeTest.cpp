// Item 13: the TV mode together with a service.

#include <algorithm>

#include "ServiceCalls.h"
#include "TPMSScenario.h"
#include "Timeline.h"

namespace {

class SetTvMode : public TPMSScenario {};

const std::string kMenu = "====================================\n"
                          "\t[Test14 List - SetTvMode with ServiceId Test]\t\n"
                          " RF case:    \n"
                          " 1.  SetTvMode(Air, ch) \n"
                          " 2.  SetTvMode(Cable, ch) \n"
                          " 3.  SetTvMode(Satellite, ch) \n"
                          " VC case:    \n"
                          " 4.  SetTvMode(Air, ch) \n"
                          " 5.  SetTvMode(Cable, ch) \n"
                          " 6.  SetTvMode(Satellite, ch) \n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n"
                          "\n";

std::string channel(const std::string& word) {
    return asked("major> ", word);
}

const std::string kLeaving = kMenu + cmd("99") + channel("1");

// A run from the creations to the query's last common condition.
std::string begun(const std::string& profile, const std::string& major) {
    return "{CreateServiceNavigation(1, 0)}{CreateService()}"
           "{ServiceNavigation.GetTvMode({-1, -1})}{ServiceProfileToServiceMode(" +
           profile + ")}{CriteriaHelper.Where(3, " + profile +
           ")}{CriteriaHelper.Where(23, 1)}{CriteriaHelper.Where(25, 0)}"
           "{CriteriaHelper.Where(13, " +
           major + ")}{CriteriaHelper.Fetch(12)}" + missingTag(" 12");
}
// The conditions for a broadcast and for a virtual channel, then the find.
std::string broadcast(const std::string& antennaMode, const std::string& channelType) {
    return "{AntennaModeToDigitalChannelType(" + antennaMode + ")}{CriteriaHelper.Where(1, " +
           channelType + ")}{Service.FindService(true, 1)}";
}
std::string virtualChannel(const std::string& antennaMode) {
    return "{CriteriaHelper.Where(1, 9)}{CriteriaHelper.Where(115, " + antennaMode +
           ")}{Service.FindService(true, 1)}";
}
const std::string kFreed =
    "{~ServiceData}{~CriteriaHelper}{Destroy(Service)}{Destroy(ServiceNavigation)}";

} // namespace

TEST_F(SetTvMode, SetsAirWithABroadcastService) {
    tv.giveFound({{{12, 77}}});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("0", "5") + broadcast("0", "40") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0x000000000000004d, \"\")}" + kFreed +
                  kLeaving);
    expectWrittenWhole(kMenu);
}

TEST_F(SetTvMode, SetsCableWithABroadcastService) {
    tv.giveFound({{{12, -2}}});
    EXPECT_EQ(visit("13", "2 5 99 1"),
              kMenu + cmd("2") + channel("5") + begun("0", "5") + broadcast("1", "41") +
                  "{ServiceNavigation.SetTvMode({1, 60}, 0xfffffffffffffffe, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, SetsSatelliteWithABroadcastService) {
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "3 65534 99 1"),
              kMenu + cmd("3") + channel("65534") + begun("0", "65534") + broadcast("2", "42") +
                  "{ServiceNavigation.SetTvMode({2, 60}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, SetsAirWithAVirtualChannel) {
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "4 5 99 1"),
              kMenu + cmd("4") + channel("5") + begun("0", "5") + virtualChannel("0") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, SetsCableWithAVirtualChannel) {
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "5 5 99 1"),
              kMenu + cmd("5") + channel("5") + begun("0", "5") + virtualChannel("1") +
                  "{ServiceNavigation.SetTvMode({1, 60}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, SetsSatelliteWithAVirtualChannel) {
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "6 0 99 1"),
              kMenu + cmd("6") + channel("0") + begun("0", "0") + virtualChannel("2") +
                  "{ServiceNavigation.SetTvMode({2, 60}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, TakesProfile2OutsideServiceMode0) {
    tv.giveTvMode(1, 4);
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("2", "5") + broadcast("0", "40") +
                  "{ServiceNavigation.SetTvMode({0, 62}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, TakesProfile2WhenTheTvModeIsNotTold) {
    tv.answer("ServiceNavigation.GetTvMode", {0});
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("2", "5") + broadcast("0", "40") +
                  "{ServiceNavigation.SetTvMode({0, 62}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

// The menu follows on the same line.
TEST_F(SetTvMode, SetsNothingForAChannelThatDoesNotExist) {
    EXPECT_EQ(visit("13", "1 5 99 1"), kMenu + cmd("1") + channel("5") + begun("0", "5") +
                                           broadcast("0", "40") + "FindService failed" + kFreed +
                                           kLeaving);
}

TEST_F(SetTvMode, SetsNothingWhenTheFindIsRefused) {
    tv.answer("Service.FindService", {-1});
    tv.giveFound({{{12, 1}}});
    EXPECT_EQ(visit("13", "4 5 99 1"), kMenu + cmd("4") + channel("5") + begun("0", "5") +
                                           virtualChannel("0") + "FindService failed" + kFreed +
                                           kLeaving);
}

TEST_F(SetTvMode, SaysThatItFailed) {
    tv.giveFound({{{12, 1}}});
    tv.answer("ServiceNavigation.SetTvMode", {0});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("0", "5") + broadcast("0", "40") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0x0000000000000001, \"\")}"
                  " SetTVMode failed!" +
                  kFreed + kLeaving);
}

TEST_F(SetTvMode, SaysThatItWasRefused) {
    tv.giveFound({{{12, 1}}});
    tv.answer("ServiceNavigation.SetTvMode", {-1});
    EXPECT_EQ(visit("13", "6 5 99 1"),
              kMenu + cmd("6") + channel("5") + begun("0", "5") + virtualChannel("2") +
                  "{ServiceNavigation.SetTvMode({2, 60}, 0x0000000000000001, \"\")}"
                  " SetTVMode failed!" +
                  kFreed + kLeaving);
}

TEST_F(SetTvMode, SaysNothingForAnAnswerAbove1) {
    tv.giveFound({{{12, 1}}});
    tv.answer("ServiceNavigation.SetTvMode", {2});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("0", "5") + broadcast("0", "40") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0x0000000000000001, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, GoesOnWithTheInvalidIdOfARecordWithoutTheField) {
    tv.giveFound({{{13, 1}}});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("0", "5") + broadcast("0", "40") +
                  missingTag(" 12") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0xffffffffffffffff, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, GoesOnWithTheInvalidIdOfAFieldWithoutAValue) {
    tv.giveFound({{{12, std::nullopt}}});
    EXPECT_EQ(visit("13", "1 5 99 1"),
              kMenu + cmd("1") + channel("5") + begun("0", "5") + broadcast("0", "40") +
                  "{TCApiPrintMessage(tag 12 has do data)}" + missingTag(" 12") +
                  "{ServiceNavigation.SetTvMode({0, 60}, 0xffffffffffffffff, \"\")}" + kFreed +
                  kLeaving);
}

TEST_F(SetTvMode, RunsAfterCreationsThatAnsweredAnError) {
    tv.answerCreation("CreateServiceNavigation", -1, true);
    tv.answerCreation("CreateService", -1, true);
    EXPECT_EQ(visit("13", "1 5 99 1"), kMenu + cmd("1") + channel("5") + begun("0", "5") +
                                           broadcast("0", "40") + "FindService failed" + kFreed +
                                           kLeaving);
}

TEST_F(SetTvMode, AsksForAChannelBeforeItIsLeft) {
    EXPECT_EQ(visit("13", "99 abc 99 65535 99 7"), kMenu + cmd("99") + channel("abc") + kMenu +
                                                       cmd("99") + channel("65535") + kMenu +
                                                       cmd("99") + channel("7"));
}

TEST_F(SetTvMode, IsLeftByEveryOtherNumber) {
    for (const std::string word :
         {"0", "7", "99", "98", "100", "-2", "-99", "0x1", "+99", "099", "99x", "257", "65537"}) {
        Console fresh;
        fresh.type("13 " + word + " 1 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(), kEntered + kMainMenu + cmd("13") + kMenu + cmd(word) +
                                        channel("1") + kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(SetTvMode, ShowsItsMenuAgainForACommandThatIsNoNumber) {
    console.type("13");
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += kMenu + cmd(word);
    }
    console.type("99 1");
    EXPECT_EQ(visitTyped("13"), expected + kLeaving);
}

TEST_F(SetTvMode, ShowsItsMenuAgainForAChannelThatIsNone) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word : {"65535", "+65535", "065535x", "131071", "2147483647", "-65537"})
        words.push_back(word);
    console.type("13");
    std::string expected;
    for (const std::string& word : words) {
        console.type("1").type(word);
        expected += kMenu + cmd("1") + channel(word);
    }
    console.type("99 1");
    EXPECT_EQ(visitTyped("13"), expected + kLeaving);
}

TEST_F(SetTvMode, TakesTheLow16BitsOfAChannel) {
    EXPECT_EQ(visit("13", "1 65541 99 1"), kMenu + cmd("1") + channel("65541") + begun("0", "5") +
                                               broadcast("0", "40") + "FindService failed" +
                                               kFreed + kLeaving);
}

TEST_F(SetTvMode, TakesNegativeChannelsAsTheirLow16Bits) {
    EXPECT_EQ(visit("13", "1 -2 99 1"), kMenu + cmd("1") + channel("-2") + begun("0", "65534") +
                                            broadcast("0", "40") + "FindService failed" + kFreed +
                                            kLeaving);
}

TEST_F(SetTvMode, TakesEverySpellingOfItsNumbers) {
    for (const std::string& command : spellingsOf("1")) {
        for (const std::string& major : spellingsOf("5")) {
            Console fresh;
            fresh.type(command).type(major).type("99 1");
            fresh.run([this] { menus.m_Start_Test14_SetTvModeTest(); });
            const std::vector<std::string> calls = fresh.calls();
            EXPECT_NE(std::find(calls.begin(), calls.end(), "CriteriaHelper.Where(13, 5)"),
                      calls.end());
            EXPECT_NE(std::find(calls.begin(), calls.end(), "AntennaModeToDigitalChannelType(0)"),
                      calls.end());
        }
    }
}

TEST_F(SetTvMode, RepeatsItsMenuAtTheEndOfInput) {
    console.type("13").endInput(2).type("99 1");
    EXPECT_EQ(visitTyped("13"), kMenu + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 99}" + channel("1"));
}

TEST_F(SetTvMode, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test14_SetTvModeTest(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}

namespace {

struct Thrown {};

} // namespace

TEST_F(SetTvMode, DestroysWhatItCreatedWhenAnExceptionPassesThrough) {
    tv.runWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(console.run([this] { menus.m_RunSetTvModeTest(ANTENNA_AIR, 5, true); }), Thrown);
    EXPECT_EQ(console.dialogue(), begun("0", "5") + virtualChannel("0") + kFreed);
}
