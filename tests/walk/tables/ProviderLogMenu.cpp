#include "Tables.h"

namespace walk::tables {

namespace {

const std::string kList = "\n====================================\n"
                          "     [Quarle-Provider Module]\n"
                          "------------------------------------\n"
                          " 0: [$log] QUARLE_PROVIDER  "
                          "\n====================================\n"
                          "99 : Exit\n"
                          "====================================\n"
                          "cmd> ";

Acts listed() {
    return {set("page", "list"), set("screen", kList)};
}

Row off() {
    return {"off",
            {"0"},
            {set("log", "OFF"), note("stopdlogtagbydefault(quarle-daemon)"),
             note("stopdlogtagbydefault(quarle-provider)"),
             note("remove(quarle-provider/data/FCdebug.conf)"), set("page", "list"),
             set("screen", kList)}};
}

Row on() {
    return {"on",
            {kNotZero},
            {set("log", "ON "), note("fopen(quarle-provider/data/FCdebug.conf, w)"),
             choose("disk", {{"file opens", {"writable"}, {note("fclose")}},
                             {"file does not open", {}, {}}}),
             note("startdlogtagbydefault(quarle-daemon)"),
             note("startdlogtagbydefault(quarle-provider)"), set("page", "list"),
             set("screen", kList)}};
}

} // namespace

const Table& providerLogMenu() {
    static const Table table = {
        "provider log menu",
        {
            set("page", "list"),
            set("screen", kList),
            loop({
                say("$screen"),
                ask("", "line", Form::Word).as("row").as("switch"),
                set("row", "$word", Form::Digits),
                set("switch", "$word", Form::Long),
                choose("page",
                       {{"list",
                         {"list"},
                         {choose("row", {{"no number", {"bad"}, listed()},
                                         {"0",
                                          {"0"},
                                          {set("page", "prompt"),
                                           set("screen", "QUARLE_DAEMON ==> ON[1]/OFF[0]: ")}},
                                         // Nothing is shown for a row that does not exist.
                                         {"any other", {}, {set("screen", "")}}})}},
                        {"prompt", {}, {choose("switch", {off(), on()})}}}),
                // By the word, not by its value, and after the word has had its effect.
                choose("line", {{"99", {"99"}, {leave()}}, {"not 99", {}, {}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
