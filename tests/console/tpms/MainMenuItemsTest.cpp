// The items of the main menu that make one call or a few and have no menu of their own.

#include "TPMSScenario.h"

namespace {

class MainMenuItems : public TPMSScenario {};

} // namespace

TEST_F(MainMenuItems, FetchesTheStatusOfThePipelinesAndPrintsNothing) {
    const std::string fetched = "{CreatePipelineUtility(1, 0)}{TPMSStatus}{PipelineUtility.GetCurrentTPMSStatus(true)}"
                                "{~TPMSStatus}{Destroy(PipelineUtility)}";
    EXPECT_EQ(Visit("4"), fetched);
    tv.Answer("PipelineUtility.GetCurrentTPMSStatus", {-1});
    tv.AnswerCreation("CreatePipelineUtility", -3, true);
    EXPECT_EQ(Visit("4"), fetched) << "refused";
}

// Without a line end: the menu follows on the same line.
TEST_F(MainMenuItems, SetsTheTvModeToAirAndSaysThatItFailedBelow1) {
    for (const auto& [answer, words] :
         {std::pair{1, ""}, {2, ""}, {0, " SetTVMode failed!"}, {-1, " SetTVMode failed!"}}) {
        tv.Answer("ServiceNavigation.SetTvMode", {answer});
        EXPECT_EQ(Visit("5"), std::string("{CreateServiceNavigation(1, 0)}"
                                          "{ServiceNavigation.SetTvMode({0, 0}, \"\")}") +
                                  words + "{Destroy(ServiceNavigation)}");
    }
}

// The object counts, not the creation's result.
TEST_F(MainMenuItems, RestartsTheVideoDecoderWhereThereIsAnAVControl) {
    const std::string restarted = "{CreateAVControl(1, 0)}{AVControl.RestartVideoDecoder()}{Destroy(AVControl)}";
    tv.Answer("AVControl.RestartVideoDecoder", {-1});
    EXPECT_EQ(Visit("8"), restarted);
    tv.AnswerCreation("CreateAVControl", -1, true);
    EXPECT_EQ(Visit("8"), restarted);
    tv.AnswerCreation("CreateAVControl", -1, false);
    EXPECT_EQ(Visit("8"), "{CreateAVControl(1, 0)}");
}

TEST_F(MainMenuItems, TakesEveryAnswerAbove0ForATunerSignal) {
    for (const auto& [answer, word] : {std::pair{1, "Success"}, {2, "Success"}, {0, "failed"}, {-1, "failed"}}) {
        tv.Answer("TunerControl.CheckTunerSignalState", {answer});
        EXPECT_EQ(Visit("10"), std::string("{CreateTunerControl(1, 0)}{TunerControl.CheckTunerSignalState()}"
                                           " CheckTunerSignalState ") +
                                   word + "!\n{Destroy(TunerControl)}");
    }
}

TEST_F(MainMenuItems, PrintsTheLatestServicesOfBothLineUps) {
    tv.Give("ServiceNavigation.GetLatestServiceId", {11, 13});
    tv.Give("ServiceNavigation.GetLatestVeldaServiceId", {-2, 0});
    EXPECT_EQ(Visit("11"), "{CreateServiceNavigation(1, 0)}"
                           "{ServiceNavigation.GetLatestServiceId(0xffffffffffffffff, {1, 0})}"
                           "[RF][CABLE] serviceId 11\n"
                           "{ServiceNavigation.GetLatestVeldaServiceId(0x000000000000000b, {1, 0})}"
                           "[VELDA][CABLE] serviceId 18446744073709551614\n"
                           "{ServiceNavigation.GetLatestServiceId(0xfffffffffffffffe, {0, 0})}"
                           "[RF][AIR] serviceId 13\n"
                           "{ServiceNavigation.GetLatestVeldaServiceId(0x000000000000000d, {0, 0})}"
                           "[VELDA][AIR] serviceId 0\n"
                           "{Destroy(ServiceNavigation)}");
}

// A call that stores nothing shows what the one before stored; before the first, all bits are set.
TEST_F(MainMenuItems, RepeatsTheServiceOfTheCallBefore) {
    const auto all = [](const std::string& serviceId) {
        return "[RF][CABLE] serviceId " + serviceId + "\n[VELDA][CABLE] serviceId " + serviceId +
               "\n[RF][AIR] serviceId " + serviceId + "\n[VELDA][AIR] serviceId " + serviceId + "\n";
    };
    tv.Give("ServiceNavigation.GetLatestServiceId", {11});
    Visit("11");
    EXPECT_NE(console.Transcript().find(all("11")), std::string::npos);
    tv.Answer("ServiceNavigation.GetLatestServiceId", {-1, -1});
    tv.Answer("ServiceNavigation.GetLatestVeldaServiceId", {-1, -1});
    Visit("11");
    EXPECT_NE(console.Transcript().find(all("18446744073709551615")), std::string::npos);
}

TEST_F(MainMenuItems, PrintsNoServicesWithoutANavigation) {
    tv.AnswerCreation("CreateServiceNavigation", -1, false);
    EXPECT_EQ(Visit("11"), "{CreateServiceNavigation(1, 0)}");
}
