#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Test13 List - Preparation Logic Test]\t\n",
           " 1. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SERVICE \n"
           " 2. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SERVICE \n"
           " 3. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SERVICE \n"
           " 4. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SERVICE \n"
           " ========================================================================= \n"
           " 5. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SOURCE \n"
           " 6. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SOURCE \n"
           " 7. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SOURCE \n"
           " 8. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SOURCE \n");

Row calls(const std::string& number, const std::string& operation) {
    return {number, {number}, {call("$util." + operation)}};
}

Row asksWhetherPending(const std::string& number, const std::string& kind) {
    return {number,
            {number},
            {call("$util.CheckPendingState(" + kind + ", false)"),
             gives("PipelineUtility.CheckPendingState", "pending", {"", "0", "1"})}};
}

} // namespace

const Table& preparationLogic() {
    static const Table table = {
        "preparation logic",
        {
            create("util", "PipelineUtility", "1, 0", Making::MayBeNull),
            loop({
                say(kMenu),
                ask("cmd> ", "n", Form::Command).whileNull("util", "99"),
                choose("n", {{"no number", {"-1"}, {again()}},
                             calls("1", "RegisterForStateChange(0, \"DebugMenuTPMS\", 0)"),
                             calls("2", "UnregisterFromStateChange(0, \"DebugMenuTPMS\")"),
                             calls("3", "NotifyReceiverState(0, \"DebugMenuTPMS\", 1, "
                                        "0xffffffffffffffff)"),
                             asksWhetherPending("4", "0"),
                             calls("5", "RegisterForStateChange(1, \"DebugMenuTPMS\", 0)"),
                             calls("6", "UnregisterFromStateChange(1, \"DebugMenuTPMS\")"),
                             calls("7", "NotifyReceiverState(1, \"DebugMenuTPMS\", 1, "
                                        "0xffffffffffffffff)"),
                             asksWhetherPending("8", "1"),
                             {"0", {"0"}, {leave()}},
                             {"99", {"99"}, {leave()}},
                             {"any other", {}, {leave()}}}),
            }),
            destroy("util"),
        }};
    return table;
}

} // namespace walk::tables
