// Item 17: two applications that prepare for a change of service.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SignalTunePreparation : public TPMSScenario {
protected:
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kSignalTunePreparation, words); }
};

const std::string kApp1 = "\"org.plexa.sigtunepreptest1\"";
const std::string kApp2 = "\"org.plexa.sigtunepreptest2\"";

// A command, its call and its result line.
std::string Step(const std::string& command, const std::string& call, const std::string& line) {
    return "{menu}<" + command + ">{PipelineUtility." + call + "}" + line + "\n";
}
std::string SetChannel(const std::string& command, const std::string& word) {
    return "{menu}<" + command + ">Enter next channel major (int)> <" + word + ">";
}
std::string Ready(const std::string& app, const std::string& serviceId, const std::string& line) {
    return "{PipelineUtility.NotifyReadyForSetService(0, " + app + ", 1, " + serviceId + ")}" + line + "\n";
}
// Leaving with a change pending.
Menu LeftPending() {
    Menu menu = kSignalTunePreparation;
    menu.closing = "{menu}<99>{PipelineUtility.CheckPendingState(0, false)}"
                   "{PipelineUtility.UnregisterFromStateChange(0, " +
                   kApp1 + ")}{PipelineUtility.UnregisterFromStateChange(0, " + kApp2 + ")}{Destroy(PipelineUtility)}";
    return menu;
}

} // namespace

TEST_F(SignalTunePreparation, RegistersAndUnregistersBothApplications) {
    EXPECT_EQ(Visit("1 3 4 6"), Step("1", "RegisterForStateChange(0, " + kApp1 + ", 0)",
                                     "Succesfully called RegisterForStateChange (App1), ret=1") +
                                    Step("3", "UnregisterFromStateChange(0, " + kApp1 + ")",
                                         "Succesfully called UnregisterFromStateChange (App1), ret=1") +
                                    Step("4", "RegisterForStateChange(0, " + kApp2 + ", 0)",
                                         "Succesfully called RegisterForStateChange (App2), ret=1") +
                                    Step("6", "UnregisterFromStateChange(0, " + kApp2 + ")",
                                         "Succesfully called UnregisterFromStateChange (App2), ret=1"));
}

TEST_F(SignalTunePreparation, CountsEveryAnswerButOneAsAFailure) {
    tv.Answer("PipelineUtility.RegisterForStateChange", {2, 0});
    tv.Answer("PipelineUtility.UnregisterFromStateChange", {-1, 2147483647});
    EXPECT_EQ(
        Visit("1 3 4 6"),
        Step("1", "RegisterForStateChange(0, " + kApp1 + ", 0)", "Fail to RegisterForStateChange (App1), ret=2") +
            Step("3", "UnregisterFromStateChange(0, " + kApp1 + ")",
                 "Fail to UnregisterFromStateChange (App1), ret=-1") +
            Step("4", "RegisterForStateChange(0, " + kApp2 + ", 0)", "Fail to RegisterForStateChange (App2), ret=0") +
            Step("6", "UnregisterFromStateChange(0, " + kApp2 + ")",
                 "Fail to UnregisterFromStateChange (App2), ret=2147483647"));
}

// The result line names another operation than the one that is called.
TEST_F(SignalTunePreparation, AnnouncesThatAnApplicationIsReady) {
    tv.GiveFound({{{12, -16}}});
    tv.GiveFound({{{12, 5}}});
    tv.Answer("PipelineUtility.NotifyReadyForSetService", {1, -4});
    EXPECT_EQ(Visit("2 7 5 65543"),
              SetChannel("2", "7") + FindByMajor("7") + "major = 7 ,serviceId = 18446744073709551600\n" +
                  Ready(kApp1, "0xfffffffffffffff0", "Succesfully called NotifyReceiverState (App1), ret=1") +
                  SetChannel("5", "65543") + FindByMajor("7") + "major = 65543 ,serviceId = 5\n" +
                  Ready(kApp2, "0x0000000000000005", "Fail to NotifyReceiverState (App2), ret=-4"));
}

// The look-up's words and the channel stand on one line.
TEST_F(SignalTunePreparation, AnnouncesNothingForAChannelThatDoesNotExist) {
    EXPECT_EQ(Visit("2 7 5 -2 2 65535"),
              SetChannel("2", "7") + FindByMajor("7", "FindService failed") + " for major=7\n" + SetChannel("5", "-2") +
                  FindByMajor("65534", "FindService failed") + " for major=-2\n" + SetChannel("2", "65535") +
                  FindByMajor("65535", "FindService failed") + " for major=65535\n");
    EXPECT_NE(console.Transcript().find("FindService failed for major=7\n"), std::string::npos);
    tv.GiveFound({{{13, 7}}});
    EXPECT_EQ(Visit("2 +007x"), SetChannel("2", "+007x") + FindByMajor("7", MissingTag(" 12")) + " for major=7\n");
}

TEST_F(SignalTunePreparation, GoesBackSilentlyForAChannelThatIsNoNumber) {
    std::string words;
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        words += "2 " + word + " 5 " + word + " ";
        expected += SetChannel("2", word) + SetChannel("5", word);
    }
    EXPECT_EQ(Visit(words), expected);
}

TEST_F(SignalTunePreparation, ShowsWhetherAChangeIsPendingWithTheFlagClearedEachTime) {
    tv.Give("PipelineUtility.CheckPendingState", {1, 1});
    tv.Answer("PipelineUtility.CheckPendingState", {1, 3});
    const std::string check = "CheckPendingState(0, false)";
    EXPECT_EQ(Visit("7 7 7"), Step("7", check, "pending=1\nSuccesfully called CheckPendingState, ret=1") +
                                  Step("7", check, "pending=1\nFail to CheckPendingState, ret=3") +
                                  Step("7", check, "pending=0\nSuccesfully called CheckPendingState, ret=1"));
}

TEST_F(SignalTunePreparation, UnregistersBothApplicationsWhenAChangeIsPendingOnLeaving) {
    tv.Give("PipelineUtility.CheckPendingState", {1});
    EXPECT_EQ(TPMSScenario::Visit(LeftPending()), "");
    tv.Give("PipelineUtility.CheckPendingState", {1});
    tv.Answer("PipelineUtility.CheckPendingState", {-1});
    tv.Answer("PipelineUtility.UnregisterFromStateChange", {-1, -1});
    EXPECT_EQ(TPMSScenario::Visit(LeftPending()), "") << "whatever the answers";
}

TEST_F(SignalTunePreparation, LeavesRegistrationsAloneWhenNothingIsPending) {
    EXPECT_EQ(Visit("1"), Step("1", "RegisterForStateChange(0, " + kApp1 + ", 0)",
                               "Succesfully called RegisterForStateChange (App1), ret=1"));
}

TEST_F(SignalTunePreparation, RunsAfterACreationThatAnsweredAnError) {
    tv.AnswerCreation("CreatePipelineUtility", -1, true);
    EXPECT_EQ(Visit(""), "");
}
