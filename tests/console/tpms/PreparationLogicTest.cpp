// Item 12: the preparation logic.

#include "TPMSScenario.h"

namespace {

class PreparationLogic : public TPMSScenario {};

const std::string kMenu =
    "====================================\n"
    "\t[Test13 List - Preparation Logic Test]\t\n"
    "------------------------------------\n"
    " 1. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SERVICE \n"
    " 2. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SERVICE \n"
    " 3. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SERVICE \n"
    " 4. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SERVICE \n"
    " ========================================================================= \n"
    " 5. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SOURCE \n"
    " 6. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SOURCE \n"
    " 7. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SOURCE \n"
    " 8. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SOURCE \n"
    "------------------------------------\n"
    " 99 : Exit\n"
    "====================================\n"
    "\n";
const std::string kCreated = "{CreatePipelineUtility(1, 0)}" + kMenu;
const std::string kDestroyed = "{Destroy(PipelineUtility)}";

} // namespace

TEST_F(PreparationLogic, CallsOneOperationForEachCommand) {
    EXPECT_EQ(
        visit("12", "1 2 3 4 5 6 7 8 99"),
        kCreated + cmd("1") + "{PipelineUtility.RegisterForStateChange(0, \"DebugMenuTPMS\", 0)}" +
            kMenu + cmd("2") + "{PipelineUtility.UnregisterFromStateChange(0, \"DebugMenuTPMS\")}" +
            kMenu + cmd("3") +
            "{PipelineUtility.NotifyReceiverState(0, \"DebugMenuTPMS\", 1, "
            "0xffffffffffffffff)}" +
            kMenu + cmd("4") + "{PipelineUtility.CheckPendingState(0, false)}" + kMenu + cmd("5") +
            "{PipelineUtility.RegisterForStateChange(1, \"DebugMenuTPMS\", 0)}" + kMenu + cmd("6") +
            "{PipelineUtility.UnregisterFromStateChange(1, \"DebugMenuTPMS\")}" + kMenu + cmd("7") +
            "{PipelineUtility.NotifyReceiverState(1, \"DebugMenuTPMS\", 1, "
            "0xffffffffffffffff)}" +
            kMenu + cmd("8") + "{PipelineUtility.CheckPendingState(1, false)}" + kMenu + cmd("99") +
            kDestroyed);
    expectWrittenWhole(kMenu);
}

TEST_F(PreparationLogic, AsksForThePendingStateAsOftenAsToldAndPrintsNothing) {
    tv.give("PipelineUtility.CheckPendingState", {1, 1});
    EXPECT_EQ(visit("12", "4 4 8 99"),
              kCreated + cmd("4") + "{PipelineUtility.CheckPendingState(0, false)}" + kMenu +
                  cmd("4") + "{PipelineUtility.CheckPendingState(0, false)}" + kMenu + cmd("8") +
                  "{PipelineUtility.CheckPendingState(1, false)}" + kMenu + cmd("99") + kDestroyed);
}

TEST_F(PreparationLogic, IsLeftBy0) {
    EXPECT_EQ(visit("12", "0"), kCreated + cmd("0") + kDestroyed);
}

TEST_F(PreparationLogic, IsLeftByEveryOtherNumber) {
    for (const std::string word :
         {"0", "9", "10", "100", "-2", "-99", "0x1", "+99", "099", "99x"}) {
        Console fresh;
        FakeNorvexAPI::current().answerCreation("CreatePipelineUtility", -1, false);
        fresh.type("12 " + word + " 99").run([this] { menus.Enter(); });
        EXPECT_EQ(fresh.dialogue(), kEntered + kMainMenu + cmd("12") + kCreated + cmd(word) +
                                        kMainMenu + cmd("99") + kLeft)
            << word;
    }
}

TEST_F(PreparationLogic, ShowsItsMenuAgainForWordsThatAreNoNumbers) {
    console.type("12");
    std::string expected = kCreated;
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += cmd(word) + kMenu;
    }
    console.type("99");
    EXPECT_EQ(visitTyped("12"), expected + cmd("99") + kDestroyed);
}

TEST_F(PreparationLogic, TakesEverySpellingOfItsCommands) {
    console.type("12");
    std::string expected = kCreated;
    for (const std::string& word : spellingsOf("8")) {
        console.type(word);
        expected += cmd(word) + "{PipelineUtility.CheckPendingState(1, false)}" + kMenu;
    }
    console.type("99");
    EXPECT_EQ(visitTyped("12"), expected + cmd("99") + kDestroyed);
}

TEST_F(PreparationLogic, DoesNotUnregisterOnLeaving) {
    EXPECT_EQ(visit("12", "1 5 0"),
              kCreated + cmd("1") +
                  "{PipelineUtility.RegisterForStateChange(0, \"DebugMenuTPMS\", 0)}" + kMenu +
                  cmd("5") + "{PipelineUtility.RegisterForStateChange(1, \"DebugMenuTPMS\", 0)}" +
                  kMenu + cmd("0") + kDestroyed);
}

TEST_F(PreparationLogic, SaysNothingWhenTheMiddlewareRefuses) {
    tv.answer("PipelineUtility.RegisterForStateChange", {-1});
    tv.answer("PipelineUtility.NotifyReceiverState", {-1});
    EXPECT_EQ(visit("12", "1 7 99"),
              kCreated + cmd("1") +
                  "{PipelineUtility.RegisterForStateChange(0, \"DebugMenuTPMS\", 0)}" + kMenu +
                  cmd("7") +
                  "{PipelineUtility.NotifyReceiverState(1, \"DebugMenuTPMS\", 1, "
                  "0xffffffffffffffff)}" +
                  kMenu + cmd("99") + kDestroyed);
}

TEST_F(PreparationLogic, RepeatsItsMenuAtTheEndOfInput) {
    console.type("12").endInput(2).type("0");
    EXPECT_EQ(visitTyped("12"), kCreated + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 0}" + kDestroyed);
}

TEST_F(PreparationLogic, PrintsItsMenuInOnePiece) {
    console.run([this] { menus.m_PrintMenu_Test13_PreparationLogicTest(); });
    EXPECT_EQ(console.whole(), kMenu + "{flush}");
    expectWrittenWhole(kMenu);
}
