// Item 12: the preparation logic.

#include "TPMSScenario.h"

namespace {

class PreparationLogic : public TPMSScenario {};

std::string Step(const std::string& command, const std::string& call) {
    return "{menu}<" + command + ">{PipelineUtility." + call + "}";
}

} // namespace

TEST_F(PreparationLogic, CallsOneOperationForEachCommand) {
    EXPECT_EQ(Visit(kPreparationLogic, "1 2 3 4 5 6 7 8"),
              Step("1", "RegisterForStateChange(0, \"DebugMenuTPMS\", 0)") +
                  Step("2", "UnregisterFromStateChange(0, \"DebugMenuTPMS\")") +
                  Step("3", "NotifyReceiverState(0, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Step("4", "CheckPendingState(0, false)") +
                  Step("5", "RegisterForStateChange(1, \"DebugMenuTPMS\", 0)") +
                  Step("6", "UnregisterFromStateChange(1, \"DebugMenuTPMS\")") +
                  Step("7", "NotifyReceiverState(1, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Step("8", "CheckPendingState(1, false)"));
}

TEST_F(PreparationLogic, AsksForThePendingStateAnewAndPrintsNothing) {
    tv.Give("PipelineUtility.CheckPendingState", {1, 1});
    EXPECT_EQ(Visit(kPreparationLogic, "4 4 8"), Step("4", "CheckPendingState(0, false)") +
                                                     Step("4", "CheckPendingState(0, false)") +
                                                     Step("8", "CheckPendingState(1, false)"));
}

TEST_F(PreparationLogic, SaysNothingWhenTheMiddlewareRefusesAndUnregistersNothingOnLeaving) {
    tv.Answer("PipelineUtility.RegisterForStateChange", {-1, 1});
    tv.Answer("PipelineUtility.NotifyReceiverState", {-1});
    EXPECT_EQ(Visit(kPreparationLogic, "1 7 5"),
              Step("1", "RegisterForStateChange(0, \"DebugMenuTPMS\", 0)") +
                  Step("7", "NotifyReceiverState(1, \"DebugMenuTPMS\", 1, 0xffffffffffffffff)") +
                  Step("5", "RegisterForStateChange(1, \"DebugMenuTPMS\", 0)"));
}
