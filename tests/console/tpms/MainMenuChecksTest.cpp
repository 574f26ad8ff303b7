// The five checks that the main menu runs without a menu of their own.

#include "TPMSScenario.h"

namespace {

class MainMenuChecks : public TPMSScenario {};

} // namespace

TEST_F(MainMenuChecks, FetchesTheStatusOfThePipelinesAndPrintsNothing) {
    EXPECT_EQ(visit("4", ""), "{CreatePipelineUtility(1, 0)}{TPMSStatus}"
                              "{PipelineUtility.GetCurrentTPMSStatus(true)}{~TPMSStatus}"
                              "{Destroy(PipelineUtility)}");
}

TEST_F(MainMenuChecks, PrintsNothingWhenTheStatusIsRefused) {
    tv.answer("PipelineUtility.GetCurrentTPMSStatus", {-1});
    tv.answerCreation("CreatePipelineUtility", -3, true);
    EXPECT_EQ(visit("4", ""), "{CreatePipelineUtility(1, 0)}{TPMSStatus}"
                              "{PipelineUtility.GetCurrentTPMSStatus(true)}{~TPMSStatus}"
                              "{Destroy(PipelineUtility)}");
}

TEST_F(MainMenuChecks, SetsTheTvModeToAir) {
    EXPECT_EQ(visit("5", ""), "{CreateServiceNavigation(1, 0)}"
                              "{ServiceNavigation.SetTvMode({0, 0}, \"\")}"
                              "{Destroy(ServiceNavigation)}");
}

// Without a line end: the menu follows on the same line.
TEST_F(MainMenuChecks, SaysThatSettingTheTvModeFailed) {
    tv.answer("ServiceNavigation.SetTvMode", {0});
    EXPECT_EQ(visit("5", ""), "{CreateServiceNavigation(1, 0)}"
                              "{ServiceNavigation.SetTvMode({0, 0}, \"\")} SetTVMode failed!"
                              "{Destroy(ServiceNavigation)}");
}

TEST_F(MainMenuChecks, SaysThatSettingTheTvModeWasRefused) {
    tv.answer("ServiceNavigation.SetTvMode", {-1});
    EXPECT_EQ(visit("5", ""), "{CreateServiceNavigation(1, 0)}"
                              "{ServiceNavigation.SetTvMode({0, 0}, \"\")} SetTVMode failed!"
                              "{Destroy(ServiceNavigation)}");
}

TEST_F(MainMenuChecks, SaysNothingWhenSettingTheTvModeAnswersMoreThan1) {
    tv.answer("ServiceNavigation.SetTvMode", {2});
    EXPECT_EQ(visit("5", ""), "{CreateServiceNavigation(1, 0)}"
                              "{ServiceNavigation.SetTvMode({0, 0}, \"\")}"
                              "{Destroy(ServiceNavigation)}");
}

TEST_F(MainMenuChecks, RestartsTheVideoDecoder) {
    tv.answer("AVControl.RestartVideoDecoder", {-1});
    EXPECT_EQ(visit("8", ""), "{CreateAVControl(1, 0)}{AVControl.RestartVideoDecoder()}"
                              "{Destroy(AVControl)}");
}

TEST_F(MainMenuChecks, GoesBackSilentlyWithoutAnAVControl) {
    tv.answerCreation("CreateAVControl", -1, false);
    EXPECT_EQ(visit("8", ""), "{CreateAVControl(1, 0)}");
}

// The object counts, not the creation's result.
TEST_F(MainMenuChecks, UsesAnAVControlWhoseCreationAnsweredAnError) {
    tv.answerCreation("CreateAVControl", -1, true);
    EXPECT_EQ(visit("8", ""), "{CreateAVControl(1, 0)}{AVControl.RestartVideoDecoder()}"
                              "{Destroy(AVControl)}");
}

TEST_F(MainMenuChecks, TellsThatTheTunerHasASignal) {
    tv.answer("TunerControl.CheckTunerSignalState", {1});
    EXPECT_EQ(visit("10", ""), "{CreateTunerControl(1, 0)}{TunerControl.CheckTunerSignalState()}"
                               " CheckTunerSignalState Success!\n{Destroy(TunerControl)}");
}

TEST_F(MainMenuChecks, TakesEveryAnswerAbove0ForASignal) {
    tv.answer("TunerControl.CheckTunerSignalState", {2});
    EXPECT_EQ(visit("10", ""), "{CreateTunerControl(1, 0)}{TunerControl.CheckTunerSignalState()}"
                               " CheckTunerSignalState Success!\n{Destroy(TunerControl)}");
}

TEST_F(MainMenuChecks, TellsThatTheTunerHasNoSignal) {
    tv.answer("TunerControl.CheckTunerSignalState", {0});
    EXPECT_EQ(visit("10", ""), "{CreateTunerControl(1, 0)}{TunerControl.CheckTunerSignalState()}"
                               " CheckTunerSignalState failed!\n{Destroy(TunerControl)}");
}

TEST_F(MainMenuChecks, TakesARefusalForNoSignal) {
    tv.answer("TunerControl.CheckTunerSignalState", {-1});
    EXPECT_EQ(visit("10", ""), "{CreateTunerControl(1, 0)}{TunerControl.CheckTunerSignalState()}"
                               " CheckTunerSignalState failed!\n{Destroy(TunerControl)}");
}

TEST_F(MainMenuChecks, PrintsTheLatestServicesOfBothLineUps) {
    tv.give("ServiceNavigation.GetLatestServiceId", {11, 13});
    tv.give("ServiceNavigation.GetLatestVeldaServiceId", {-2, 0});
    EXPECT_EQ(visit("11", ""),
              "{CreateServiceNavigation(1, 0)}"
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

TEST_F(MainMenuChecks, PrintsAllBitsSetWhenNoCallStoresAService) {
    tv.answer("ServiceNavigation.GetLatestServiceId", {-1, -1});
    tv.answer("ServiceNavigation.GetLatestVeldaServiceId", {-1, -1});
    EXPECT_EQ(visit("11", ""),
              "{CreateServiceNavigation(1, 0)}"
              "{ServiceNavigation.GetLatestServiceId(0xffffffffffffffff, {1, 0})}"
              "[RF][CABLE] serviceId 18446744073709551615\n"
              "{ServiceNavigation.GetLatestVeldaServiceId(0xffffffffffffffff, {1, 0})}"
              "[VELDA][CABLE] serviceId 18446744073709551615\n"
              "{ServiceNavigation.GetLatestServiceId(0xffffffffffffffff, {0, 0})}"
              "[RF][AIR] serviceId 18446744073709551615\n"
              "{ServiceNavigation.GetLatestVeldaServiceId(0xffffffffffffffff, {0, 0})}"
              "[VELDA][AIR] serviceId 18446744073709551615\n"
              "{Destroy(ServiceNavigation)}");
}

// A call that stores nothing shows what the one before stored.
TEST_F(MainMenuChecks, RepeatsTheServiceOfTheCallBefore) {
    tv.give("ServiceNavigation.GetLatestServiceId", {11});
    const std::string dialogue = visit("11", "");
    EXPECT_EQ(console.calls().size(), 11U);
    EXPECT_NE(dialogue.find("[RF][CABLE] serviceId 11\n"), std::string::npos);
    EXPECT_NE(dialogue.find("[VELDA][CABLE] serviceId 11\n"), std::string::npos);
    EXPECT_NE(dialogue.find("[RF][AIR] serviceId 11\n"), std::string::npos);
    EXPECT_NE(dialogue.find("[VELDA][AIR] serviceId 11\n"), std::string::npos);
}

TEST_F(MainMenuChecks, PrintsNoServicesWithoutANavigation) {
    tv.answerCreation("CreateServiceNavigation", -1, false);
    EXPECT_EQ(visit("11", ""), "{CreateServiceNavigation(1, 0)}");
}
