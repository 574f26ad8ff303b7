#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kDouble = " " + std::string(86, '=') + "\n";
const std::string kSingle = " " + std::string(86, '-') + "\n";
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

const std::string kApp1 = "\"org.plexa.sigtunepreptest1\"";
const std::string kApp2 = "\"org.plexa.sigtunepreptest2\"";

// 1 alone is success.
Acts told(const std::string& label) {
    return {choose("ret", {{"called", {"1"}, {say("Succesfully called ")}},
                           {"failed", {}, {say("Fail to ")}}}),
            say(label + ", ret=$ret\n")};
}

Acts together(Acts acts, const Acts& more) {
    acts.insert(acts.end(), more.begin(), more.end());
    return acts;
}

Row registers(const std::string& number, const std::string& app, const std::string& label) {
    return {number,
            {number},
            together({call("$util.RegisterForStateChange(0, " + app + ", 0)")},
                     told("RegisterForStateChange (" + label + ")"))};
}

Row unregisters(const std::string& number, const std::string& app, const std::string& label) {
    return {number,
            {number},
            together({call("$util.UnregisterFromStateChange(0, " + app + ")")},
                     told("UnregisterFromStateChange (" + label + ")"))};
}

// What it says is another operation than the one it calls.
Row isReady(const std::string& number, const std::string& app, const std::string& label) {
    return {
        number,
        {number},
        together(
            {ask("Enter next channel major (int)> ", "typed", Form::Command),
             choose("typed", {{"no channel", {"-1"}, {again()}}, {"a channel", {}, {}}}),
             set("major", "$typed", Form::Low16), run(findByMajor),
             choose("id", {{"no service", {kInvalidService}, {say(" for major=$typed\n"), again()}},
                           {"a service", {}, {}}}),
             say("major = $typed ,serviceId = $id\n"),
             call("$util.NotifyReadyForSetService(0, " + app + ", 1, $#id)")},
            told("NotifyReceiverState (" + label + ")"))};
}

Acts pendingAsked() {
    return {set("pending", "0"), call("$util.CheckPendingState(0, false)"),
            gives("PipelineUtility.CheckPendingState", "pending", {"", "0", "1"})};
}

} // namespace

const Table& signalTunePreparation() {
    static const Table table = {
        "signal tune preparation",
        together(
            {
                create("util", "PipelineUtility", "1, 0"),
                loop({
                    say(kMenu),
                    ask("cmd> ", "n", Form::Command),
                    choose("n", {{"no number", {"-1"}, {}},
                                 registers("1", kApp1, "App1"),
                                 isReady("2", kApp1, "App1"),
                                 unregisters("3", kApp1, "App1"),
                                 registers("4", kApp2, "App2"),
                                 isReady("5", kApp2, "App2"),
                                 unregisters("6", kApp2, "App2"),
                                 {"7",
                                  {"7"},
                                  together(together(pendingAsked(), {say("pending=$pending\n")}),
                                           told("CheckPendingState"))},
                                 {"0", {"0"}, {}},
                                 {"99", {"99"}, {leave()}},
                                 {"any other", {}, {}}}),
                }),
            },
            together(pendingAsked(),
                     {
                         choose("pending",
                                {{"pending on leaving",
                                  {"1"},
                                  {call("$util.UnregisterFromStateChange(0, " + kApp1 + ")"),
                                   call("$util.UnregisterFromStateChange(0, " + kApp2 + ")")}},
                                 {"nothing pending on leaving", {}, {}}}),
                         destroy("util"),
                     }))};
    return table;
}

} // namespace walk::tables
