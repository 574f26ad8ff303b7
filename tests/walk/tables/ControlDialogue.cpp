#include "Tables.h"

namespace walk::tables {

namespace {

const std::string kCall = "Run(connection, com.holvi.IDebugPrintControl, ";

// What the far side answers, and what becomes of it: "result" is the status, -1 where the exchange
// failed or brought none; an empty screen leaves the one before.
Acts answered(const std::string& method) {
    return {
        draw("exchange", {"works", "works", "works", "works", "works", "fails"}),
        draw("status", {"1", "1", "1", "1", "2", "2147483647", "0", "-1", "none", "none"}),
        draw("shown", {"Norvex> ", "help\n items\n> ", "a%d%s\n\n\tb", "\xc3\xa9> ", "", "none"}),
        script("reply", method),
        choose("shown", {{method + " shows nothing", {"none", ""}, {}},
                         {method + " shows a screen", {}, {set("screen", "$shown")}}}),
        set("result", "-1"),
        choose("exchange", {{method + " fails", {"fails"}, {}},
                            {method + " works",
                             {},
                             {choose("status", {{"no status", {"none"}, {}},
                                                {"a status", {}, {set("result", "$status")}}})}}}),
    };
}

Acts together(const Acts& first, const Acts& second, const Acts& third) {
    Acts acts = first;
    acts.insert(acts.end(), second.begin(), second.end());
    acts.insert(acts.end(), third.begin(), third.end());
    return acts;
}

Acts executed() {
    return together(
        {
            say("$screen"),
            ask("", "line", Form::Word),
            set("tree", "$word", Form::TextTree),
            note(kCall + "Execute, 1, false; out value 4 = ffffffff; in TCMarshalableString "
                         "$tree; out TCMarshalableString)"),
        },
        answered("Execute"),
        {
            choose("result",
                   {{"goes on", {kAboveZero}, {again()}},
                    {"ends",
                     {},
                     {note(kCall + "Stop, 2, false; out value 4 = ffffffff)"),
                      draw("exchange", {"works", "fails"}), draw("status", {"1", "0", "none"}),
                      script("reply", "Stop"), leave()}}}),
        });
}

} // namespace

const Table& controlDialogue() {
    static const Table table = {
        "control dialogue",
        together(
            {note(kCall + "Start, 0, false; out value 4 = ffffffff; out TCMarshalableString)")},
            answered("Start"),
            {choose("result", {{"started", {kAboveZero}, {loop(executed())}},
                               {"not started",
                                {},
                                {say("Failed to start selected[$n] debug print control\n"),
                                 say("Command not implemented\n")}}})})};
    return table;
}

} // namespace walk::tables
