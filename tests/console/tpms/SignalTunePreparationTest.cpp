// Item 17: two applications that prepare for a change of service.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SignalTunePreparation : public TPMSScenario {};

const std::string kDouble =
    " ======================================================================"
    "================\n";
const std::string kSingle =
    " ----------------------------------------------------------------------"
    "----------------\n";
const std::string kMenu =
    kDouble + "\t      [Test18 List - SignalTunePreparationMechanism (AIR/CABLE/SAT)]\n" + kSingle +
    " 1. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App1)\n"
    " 2. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App1)\n"
    " 3. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App1)\n" +
    kDouble +
    " 4. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App2)\n"
    " 5. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App2)\n"
    " 6. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App2)\n" +
    kDouble + " 7. call [Main Handle] CheckPendingState(STATE_CHANGE_SERVICE) \n" + kSingle +
    " 99 : Exit\n" + kDouble + "\n";

const std::string kCreated = "{CreatePipelineUtility(1, 0)}" + kMenu;
const std::string kApp1 = "\"org.plexa.sigtunepreptest1\"";
const std::string kApp2 = "\"org.plexa.sigtunepreptest2\"";
const std::string kCheck = "{PipelineUtility.CheckPendingState(0, false)}";
const std::string kDestroyed = "{Destroy(PipelineUtility)}";
const std::string kDone = kMenu + cmd("99") + kCheck + kDestroyed;

std::string channel(const std::string& word) {
    return asked("Enter next channel major (int)> ", word);
}
std::string called(const std::string& call) {
    return "{PipelineUtility." + call + "}";
}

} // namespace

TEST_F(SignalTunePreparation, HasRulesOf86Signs) {
    EXPECT_EQ(kDouble, " " + std::string(86, '=') + "\n");
    EXPECT_EQ(kSingle, " " + std::string(86, '-') + "\n");
}

TEST_F(SignalTunePreparation, RegistersAndUnregistersBothApplications) {
    EXPECT_EQ(visit("17", "1 3 4 6 99"),
              kCreated + cmd("1") + called("RegisterForStateChange(0, " + kApp1 + ", 0)") +
                  "Succesfully called RegisterForStateChange (App1), ret=1\n" + kMenu + cmd("3") +
                  called("UnregisterFromStateChange(0, " + kApp1 + ")") +
                  "Succesfully called UnregisterFromStateChange (App1), ret=1\n" + kMenu +
                  cmd("4") + called("RegisterForStateChange(0, " + kApp2 + ", 0)") +
                  "Succesfully called RegisterForStateChange (App2), ret=1\n" + kMenu + cmd("6") +
                  called("UnregisterFromStateChange(0, " + kApp2 + ")") +
                  "Succesfully called UnregisterFromStateChange (App2), ret=1\n" + kDone);
    expectWrittenWhole(kMenu);
}

TEST_F(SignalTunePreparation, CountsEveryAnswerButOneAsAFailure) {
    tv.answer("PipelineUtility.RegisterForStateChange", {2, 0});
    tv.answer("PipelineUtility.UnregisterFromStateChange", {-1, 2147483647});
    EXPECT_EQ(visit("17", "1 3 4 6 99"),
              kCreated + cmd("1") + called("RegisterForStateChange(0, " + kApp1 + ", 0)") +
                  "Fail to RegisterForStateChange (App1), ret=2\n" + kMenu + cmd("3") +
                  called("UnregisterFromStateChange(0, " + kApp1 + ")") +
                  "Fail to UnregisterFromStateChange (App1), ret=-1\n" + kMenu + cmd("4") +
                  called("RegisterForStateChange(0, " + kApp2 + ", 0)") +
                  "Fail to RegisterForStateChange (App2), ret=0\n" + kMenu + cmd("6") +
                  called("UnregisterFromStateChange(0, " + kApp2 + ")") +
                  "Fail to UnregisterFromStateChange (App2), ret=2147483647\n" + kDone);
}

// The result line names another operation than the one that is called.
TEST_F(SignalTunePreparation, AnnouncesThatTheFirstApplicationIsReady) {
    tv.giveFound({{{12, -16}}});
    EXPECT_EQ(visit("17", "2 7 99"),
              kCreated + cmd("2") + channel("7") + findByMajor("Service", "7") +
                  foundByMajor("Service") + "major = 7 ,serviceId = 18446744073709551600\n" +
                  called("NotifyReadyForSetService(0, " + kApp1 + ", 1, 0xfffffffffffffff0)") +
                  "Succesfully called NotifyReceiverState (App1), ret=1\n" + kDone);
}

TEST_F(SignalTunePreparation, AnnouncesThatTheSecondApplicationIsReady) {
    tv.giveFound({{{12, 5}}});
    tv.answer("PipelineUtility.NotifyReadyForSetService", {-4});
    EXPECT_EQ(visit("17", "5 65543 99"),
              kCreated + cmd("5") + channel("65543") + findByMajor("Service", "7") +
                  foundByMajor("Service") + "major = 65543 ,serviceId = 5\n" +
                  called("NotifyReadyForSetService(0, " + kApp2 + ", 1, 0x0000000000000005)") +
                  "Fail to NotifyReceiverState (App2), ret=-4\n" + kDone);
}

TEST_F(SignalTunePreparation, AnnouncesNothingForAChannelThatDoesNotExist) {
    EXPECT_EQ(visit("17", "2 7 5 -2 99"),
              kCreated + cmd("2") + channel("7") + findByMajor("Service", "7") +
                  "FindService failed" + foundByMajor("Service") + " for major=7\n" + kMenu +
                  cmd("5") + channel("-2") +
                  "{CreateService()}{GetNavigationCriteria(14, 0)}"
                  "{CriteriaHelper.Where(13, 65534)}{CriteriaHelper.Fetch(12)}"
                  "{Service#2.FindService(true, 1)}FindService failed" +
                  foundByMajor("Service#2") + " for major=-2\n" + kDone);
    EXPECT_NE(console.transcript().find("FindService failed for major=7\n"), std::string::npos);
}

TEST_F(SignalTunePreparation, AnnouncesNothingForARecordWithoutAService) {
    tv.giveFound({{{13, 7}}});
    EXPECT_EQ(visit("17", "2 +007x 99"), kCreated + cmd("2") + channel("+007x") +
                                             findByMajor("Service", "7") + missingTag(" 12") +
                                             foundByMajor("Service") + " for major=7\n" + kDone);
}

TEST_F(SignalTunePreparation, LooksForChannel65535) {
    EXPECT_EQ(visit("17", "2 65535 99"),
              kCreated + cmd("2") + channel("65535") + findByMajor("Service", "65535") +
                  "FindService failed" + foundByMajor("Service") + " for major=65535\n" + kDone);
}

TEST_F(SignalTunePreparation, GoesBackSilentlyForAChannelThatIsNoNumber) {
    console.type("17");
    std::string expected = "{CreatePipelineUtility(1, 0)}";
    for (const std::string& word : kNoNumbers) {
        console.type("2").type(word).type("5").type(word);
        expected += kMenu + cmd("2") + channel(word) + kMenu + cmd("5") + channel(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("17"), expected + kDone);
}

TEST_F(SignalTunePreparation, TellsThatNothingIsPending) {
    EXPECT_EQ(visit("17", "7 99"), kCreated + cmd("7") + kCheck +
                                       "pending=0\n"
                                       "Succesfully called CheckPendingState, ret=1\n" +
                                       kDone);
}

TEST_F(SignalTunePreparation, TellsThatAChangeIsPending) {
    tv.give("PipelineUtility.CheckPendingState", {1, 0});
    tv.answer("PipelineUtility.CheckPendingState", {3});
    EXPECT_EQ(visit("17", "7 99"), kCreated + cmd("7") + kCheck +
                                       "pending=1\n"
                                       "Fail to CheckPendingState, ret=3\n" +
                                       kDone);
}

TEST_F(SignalTunePreparation, AsksEachTimeWithTheFlagCleared) {
    tv.give("PipelineUtility.CheckPendingState", {1, 1, 0});
    EXPECT_EQ(visit("17", "7 7 99"), kCreated + cmd("7") + kCheck +
                                         "pending=1\n"
                                         "Succesfully called CheckPendingState, ret=1\n" +
                                         kMenu + cmd("7") + kCheck +
                                         "pending=1\n"
                                         "Succesfully called CheckPendingState, ret=1\n" +
                                         kDone);
}

TEST_F(SignalTunePreparation, UnregistersBothApplicationsWhenAChangeIsPendingOnLeaving) {
    tv.give("PipelineUtility.CheckPendingState", {1});
    EXPECT_EQ(visit("17", "99"), kCreated + cmd("99") + kCheck +
                                     called("UnregisterFromStateChange(0, " + kApp1 + ")") +
                                     called("UnregisterFromStateChange(0, " + kApp2 + ")") +
                                     kDestroyed);
}

TEST_F(SignalTunePreparation, IgnoresAllAnswersOnLeaving) {
    tv.give("PipelineUtility.CheckPendingState", {1});
    tv.answer("PipelineUtility.CheckPendingState", {-1});
    tv.answer("PipelineUtility.UnregisterFromStateChange", {-1, -1});
    EXPECT_EQ(visit("17", "99"), kCreated + cmd("99") + kCheck +
                                     called("UnregisterFromStateChange(0, " + kApp1 + ")") +
                                     called("UnregisterFromStateChange(0, " + kApp2 + ")") +
                                     kDestroyed);
}

TEST_F(SignalTunePreparation, LeavesRegistrationsAloneWhenNothingIsPending) {
    EXPECT_EQ(visit("17", "1 99"),
              kCreated + cmd("1") + called("RegisterForStateChange(0, " + kApp1 + ", 0)") +
                  "Succesfully called RegisterForStateChange (App1), ret=1\n" + kDone);
}

TEST_F(SignalTunePreparation, ShowsItsMenuAgainSilentlyForEveryOtherWord) {
    std::vector<std::string> words = kNoNumbers;
    for (const std::string word :
         {"0", "8", "42", "98", "100", "-2", "-99", "0x1", "2147483647", "257"})
        words.push_back(word);
    console.type("17");
    std::string expected = "{CreatePipelineUtility(1, 0)}";
    for (const std::string& word : words) {
        console.type(word);
        expected += kMenu + cmd(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("17"), expected + kDone);
}

TEST_F(SignalTunePreparation, TakesEverySpellingOfItsCommands) {
    console.type("17");
    std::string expected = "{CreatePipelineUtility(1, 0)}";
    for (const std::string& word : spellingsOf("7")) {
        console.type(word);
        expected +=
            kMenu + cmd(word) + kCheck + "pending=0\nSuccesfully called CheckPendingState, ret=1\n";
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("17"), expected + kMenu + cmd("+099x") + kCheck + kDestroyed);
}

TEST_F(SignalTunePreparation, RunsAfterACreationThatAnsweredAnError) {
    tv.answerCreation("CreatePipelineUtility", -1, true);
    EXPECT_EQ(visit("17", "99"), kCreated + cmd("99") + kCheck + kDestroyed);
}

TEST_F(SignalTunePreparation, RepeatsItsMenuAtTheEndOfInput) {
    console.type("17").endInput(2).type("99");
    EXPECT_EQ(visitTyped("17"), kCreated + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 99}" + kCheck + kDestroyed);
}

TEST_F(SignalTunePreparation, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test18_SignalTunePreparationMechanism(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}
