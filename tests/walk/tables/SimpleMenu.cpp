#include "Tables.h"

namespace walk::tables {

namespace {

const std::string kCall = "Run(connection, com.holvi.IDebugPrintControl, ";

} // namespace

const Table& simpleMenu() {
    static const Table table = {
        "simple menu",
        {
            loop({
                note(kCall + "IsQoSEnabled, 8, false; out value 1 = 00)"),
                draw("exchange", {"works", "works", "fails"}),
                draw("qos", {"true", "false", "none"}),
                draw("status", {"none"}),
                script("reply", "IsQoSEnabled"),
                choose("qos", {{"QoS on", {"true"}, {set("enabled", "enabled")}},
                               {"QoS off", {"false"}, {set("enabled", "disabled")}},
                               {"no answer", {}, {set("enabled", "disabled")}}}),

                // Neither the exchange nor the status counts, only what has come.
                note(kCall + "GetMenuItems, 4, false; out value 4 = ffffffff; out "
                             "TCMarshalableOneDimensionContainer)"),
                draw("exchange", {"works", "works", "fails"}),
                draw("status", {"1", "0", "-1", "none"}),
                draw("listed", {"yes", "yes", "yes", "yes", "yes", "no"}),
                script("items"),
                script("reply", "GetMenuItems"),
                choose("listed",
                       {{"items came", {"yes"}, {}}, {"no items came", {}, {script("no items")}}}),

                say("\n====================================\n"
                    "     [Simple menu]\n"
                    "------------------------------------\n"
                    "QoS is $enabled\n"),
                eachItem({say("$2<index: [$3<state] $17<name\n")}),
                say("====================================\n"
                    "99 : Exit\n"
                    "====================================\n"),
                ask("cmd> ", "n", Form::Int),
                set("echo", "$word", Form::LeftByInt),
                say("$echo"),
                choose("n", {{"no number", {"bad"}, {again()}},
                             {"below 0", {"-2147483648..-1"}, {again()}},
                             {"0 or above", {}, {}}}),
                script("picked item"),
                choose("picked",
                       {{"an item",
                         {"item"},
                         {
                             set("tree", "$name", Form::TextTree),
                             set("id", "$id", Form::Hex32),
                             note(kCall + "SetMenuItem, 6, false; out value 4 = ffffffff; in "
                                          "TSMenuItem {0=$tree, 1=value $state, 2=value $id})"),
                             draw("exchange", {"works", "fails"}),
                             draw("status", {"1", "0", "-1", "none"}),
                             script("reply", "SetMenuItem"),
                             again(),
                         }},
                        {"no item", {}, {}}}),
                choose("n", {{"99", {"99"}, {leave()}}, {"not 99", {}, {}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
