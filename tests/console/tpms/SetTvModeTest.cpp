// Item 13: the TV mode together with a service.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SetTvMode : public TPMSScenario {
protected:
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kSetTvMode, words); }
};

std::string Channel(const std::string& command, const std::string& word) {
    return "{menu}<" + command + ">major> <" + word + ">";
}
// A run: the query, the find, what follows it, and the end. The record's field is asked for once
// before anything was found.
std::string Ran(const std::string& major, const std::string& find, const std::string& set,
                const std::string& profile = "0") {
    return "{CreateServiceNavigation(1, 0)}{CreateService()}" + InLineUp(profile, major) + MissingTag(" 12") + find +
           set + "{~ServiceData}{~CriteriaHelper}{Destroy(Service)}{Destroy(ServiceNavigation)}";
}
std::string FindVirtual(const std::string& antennaMode) {
    return "{CriteriaHelper.Where(1, 9)}{CriteriaHelper.Where(115, " + antennaMode + ")}{Service.FindService(true, 1)}";
}
// The fake's service mode is 60 and the profile.
std::string Set(const std::string& tvMode, const std::string& serviceId = "0x0000000000000001") {
    return "{ServiceNavigation.SetTvMode({" + tvMode + "}, " + serviceId + ", \"\")}";
}

} // namespace

TEST_F(SetTvMode, SetsEachAntennaWithABroadcastServiceOrAVirtualChannel) {
    tv.GiveFound({{{12, 77}}});
    tv.GiveFound({{{12, -2}}});
    for (int i = 0; i < 4; ++i)
        tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Visit("1 5 2 5 3 65534 4 5 5 5 6 0"),
              Channel("1", "5") + Ran("5", FindBroadcast("0"), Set("0, 60", "0x000000000000004d")) + Channel("2", "5") +
                  Ran("5", FindBroadcast("1"), Set("1, 60", "0xfffffffffffffffe")) + Channel("3", "65534") +
                  Ran("65534", FindBroadcast("2"), Set("2, 60")) + Channel("4", "5") +
                  Ran("5", FindVirtual("0"), Set("0, 60")) + Channel("5", "5") +
                  Ran("5", FindVirtual("1"), Set("1, 60")) + Channel("6", "0") +
                  Ran("0", FindVirtual("2"), Set("2, 60")));
}

TEST_F(SetTvMode, TakesProfile2OutsideServiceMode0AndWhenTheTvModeIsNotKnown) {
    const std::string expected = Channel("1", "5") + Ran("5", FindBroadcast("0"), Set("0, 62"), "2");
    tv.GiveTvMode(1, 4);
    tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Visit("1 5"), expected);
    tv.GiveTvMode(0, 0);
    tv.Answer("ServiceNavigation.GetTvMode", {0});
    tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Visit("1 5"), expected);
}

// The menu follows on the same line.
TEST_F(SetTvMode, SetsNothingWhenTheFindFails) {
    EXPECT_EQ(Visit("1 5"), Channel("1", "5") + Ran("5", FindBroadcast("0"), "FindService failed"));
    tv.Answer("Service.FindService", {-1});
    tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Visit("4 5"), Channel("4", "5") + Ran("5", FindVirtual("0"), "FindService failed"));
}

TEST_F(SetTvMode, SaysThatItFailedBelow1) {
    for (const auto& [answer, words] :
         {std::pair{0, " SetTVMode failed!"}, {-1, " SetTVMode failed!"}, {1, ""}, {2, ""}}) {
        tv.GiveFound({{{12, 1}}});
        tv.Answer("ServiceNavigation.SetTvMode", {answer});
        EXPECT_EQ(Visit("6 5"), Channel("6", "5") + Ran("5", FindVirtual("2"), Set("2, 60") + words)) << answer;
    }
}

TEST_F(SetTvMode, GoesOnWithTheInvalidIdOfARecordWithoutTheFieldOrItsValue) {
    tv.GiveFound({{{13, 1}}});
    tv.GiveFound({{{12, std::nullopt}}});
    const std::string set = MissingTag(" 12") + Set("0, 60", "0xffffffffffffffff");
    EXPECT_EQ(Visit("1 5 1 5"), Channel("1", "5") + Ran("5", FindBroadcast("0"), set) + Channel("1", "5") +
                                    Ran("5", FindBroadcast("0"), EmptyTag("12") + set));
}

TEST_F(SetTvMode, RunsAfterCreationsThatAnsweredAnError) {
    tv.AnswerCreation("CreateServiceNavigation", -1, true);
    tv.AnswerCreation("CreateService", -1, true);
    EXPECT_EQ(Visit("1 5"), Channel("1", "5") + Ran("5", FindBroadcast("0"), "FindService failed"));
}

TEST_F(SetTvMode, AsksForAChannelBeforeItIsLeftAndStaysForOneThatIsNone) {
    std::string words;
    std::string expected;
    for (const std::string& word : kNoChannels) {
        words += "1 " + word + " 99 " + word + " ";
        expected += Channel("1", word) + Channel("99", word);
    }
    EXPECT_EQ(Visit(words), expected);
}

TEST_F(SetTvMode, TakesTheLow16BitsOfAChannelInEverySpelling) {
    const std::pair<std::string, std::string> channels[] = {{"65541", "5"}, {"-2", "65534"}};
    for (const auto& [word, major] : channels) {
        EXPECT_EQ(Visit("1 " + word), Channel("1", word) + Ran(major, FindBroadcast("0"), "FindService failed"));
    }
    for (const std::string& word : SpellingsOf("5")) {
        EXPECT_EQ(Visit("1 " + word), Channel("1", word) + Ran("5", FindBroadcast("0"), "FindService failed"));
    }
}

namespace {

struct Thrown {};

} // namespace

TEST_F(SetTvMode, DestroysWhatItCreatedWhenAnExceptionPassesThrough) {
    tv.RunWithin("Service.FindService", [] { throw Thrown{}; });
    EXPECT_THROW(console.Run([this] { menus.m_RunSetTvModeTest(ANTENNA_AIR, 5, true); }), Thrown);
    EXPECT_EQ(console.Dialogue(), Ran("5", FindVirtual("0"), ""));
}
