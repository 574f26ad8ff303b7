// Items 20 and 21: the invalid service and the boot-up service.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class InvalidService : public TPMSScenario {};

const std::string kNavigation = "{CreateServiceNavigation(1, 0)}";

class BootupService : public TPMSScenario {
protected:
    // Sets the service of a channel; gives the dialogue, then the answer.
    std::string Set(const std::string& words) {
        bool set = false;
        const std::string dialogue = Run(words, [&] { set = menus.m_SetBootupService(); });
        return dialogue + (set ? "set" : "not set");
    }
};

// A channel's look-up with what it prints, and the call.
std::string Booted(const std::string& word, const std::string& lookUp, const std::string& serviceId) {
    return kNavigation + "major> <" + word + ">" + lookUp + "{ServiceNavigation.SetBootupService(" + serviceId +
           ", {-1, -1}, 0)}";
}
const std::string kNotFound = FindByMajor("7", "FindService failed");
const std::string kDestroyed = "{Destroy(ServiceNavigation)}";

} // namespace

TEST_F(InvalidService, IsHandedToBothSwitchesAndNothingIsPrinted) {
    tv.Answer("ServiceNavigation.SetService", {1, -1});
    tv.Answer("SourceControl.SetSource", {1, -1});
    const std::string both = "{menu}<1>{ServiceNavigation.SetService(0xffffffffffffffff, 0, 0, \"\")}"
                             "{menu}<2>{SourceControl.SetSource(0, 0xffffffffffffffff, \"\")}";
    EXPECT_EQ(Visit(kInvalidService, "1 2 1 2"), both + both);
}

// The navigation is kept when the source control cannot be created.
TEST_F(InvalidService, SaysWhatCouldNotBeCreated) {
    const auto run = [this](const std::string& words) {
        bool ran = false;
        Run(words, [&] { ran = menus.m_InvalidServiceTest(); });
        return ran;
    };
    EXPECT_TRUE(run("99"));
    for (const int result : {-1, 1}) {
        tv.AnswerCreation("CreateServiceNavigation", result, false);
        EXPECT_EQ(Visit("20"), kNavigation + "CreateServiceNavigation failed\n");
        tv.AnswerCreation("CreateSourceControl", result, false);
        EXPECT_EQ(Visit("20"), kInvalidService.opening + "CreateSourceControl failed\n");
    }
    tv.AnswerCreation("CreateServiceNavigation", -1, false);
    EXPECT_FALSE(run(""));
    tv.AnswerCreation("CreateSourceControl", -1, false);
    EXPECT_FALSE(run(""));
    kept = {"ServiceNavigation", "ServiceNavigation#2", "ServiceNavigation#3"};
}

TEST_F(BootupService, IsSetForTheLow16BitsOfAChannelInEverySpelling) {
    tv.GiveFound({{{12, -16}}});
    EXPECT_EQ(Visit("21", "7"), Booted("7", FindByMajor("7"), "0xfffffffffffffff0") + kDestroyed);
    for (const std::string& word : SpellingsOf("7")) {
        tv.GiveFound({{{12, 1}}});
        EXPECT_EQ(Set(word), Booted(word, FindByMajor("7"), "0x0000000000000001") + kDestroyed + "set");
    }
    tv.GiveFound({{{12, 1}}});
    EXPECT_EQ(Set("-2"), Booted("-2", FindByMajor("65534"), "0x0000000000000001") + kDestroyed + "set");
}

TEST_F(BootupService, IsTheInvalidOneForAChannelThatDoesNotExist) {
    EXPECT_EQ(Set("7"), Booted("7", kNotFound, "0xffffffffffffffff") + kDestroyed + "set");
}

// Both words and the menu stand on one line; the navigation is kept.
TEST_F(BootupService, SaysThatTheInvalidOneWasRefused) {
    tv.Answer("ServiceNavigation.SetBootupService", {-1});
    EXPECT_EQ(Visit("21", "7"), Booted("7", kNotFound, "0xffffffffffffffff") + " SetBootupService failed!");
    EXPECT_NE(console.Transcript().find("major> FindService failed SetBootupService failed!==="), std::string::npos);
    kept = {"ServiceNavigation"};
}

TEST_F(BootupService, TakesEveryAnswerAbove0ForSuccess) {
    tv.GiveFound({{{12, 1}}});
    tv.GiveFound({{{12, 1}}});
    tv.Answer("ServiceNavigation.SetBootupService", {2, 0});
    EXPECT_EQ(Set("7"), Booted("7", FindByMajor("7"), "0x0000000000000001") + kDestroyed + "set");
    EXPECT_EQ(Set("7"), Booted("7", FindByMajor("7"), "0x0000000000000001") + " SetBootupService failed!not set");
    kept = {"ServiceNavigation"};
}

// The navigation is kept.
TEST_F(BootupService, GoesBackSilentlyForAChannelThatIsNone) {
    for (const std::string& word : kNoChannels)
        EXPECT_EQ(Set(word), kNavigation + "major> <" + word + ">not set");
    console.EndInput(2);
    EXPECT_EQ(Set(""), kNavigation + "major> <end of input>not set");
    kept = tv.GetKept();
    EXPECT_EQ(kept.size(), kNoChannels.size() + 1);
}

TEST_F(BootupService, SaysThatTheNavigationCouldNotBeCreated) {
    for (const int result : {-1, 1}) {
        tv.AnswerCreation("CreateServiceNavigation", result, false);
        EXPECT_EQ(Set(""), kNavigation + "CreateServiceNavigation failed\nnot set");
    }
}
