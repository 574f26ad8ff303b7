#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

const Table& hdmiAnalysis() {
    static const Table table = {
        "HDMI analysis",
        {
            create("src", "SourceControl", "1, 0", Making::MayBeNull),
            loop({
                ask(" [HDMI 1~6] select num> ", "input", Form::Command),
                choose("input", {{"input 2", {"2"}, {set("source", "14")}},
                                 {"input 3", {"3"}, {set("source", "15")}},
                                 {"input 4", {"4"}, {set("source", "16")}},
                                 {"input 5", {"5"}, {set("source", "38")}},
                                 {"input 6", {"6"}, {set("source", "39")}},
                                 {"input 7", {"7"}, {set("source", "46")}},
                                 {"input 8", {"8"}, {set("source", "47")}},
                                 {"input 1", {"1"}, {set("source", "13")}},
                                 {"no number", {"-1"}, {set("source", "13")}},
                                 {"any other input", {}, {set("source", "13")}}}),
                say(framed("\t[Test1 List - Video Mute Control]\t\n",
                           " 1. call ISourceControl::StartHDMIAnalysis \n"
                           " 2. call ISourceControl::StopHDMIAnalysis \n")),
                ask("cmd> ", "n", Form::Command).whileNull("src", "99"),
                choose("n", {{"no number", {"-1"}, {}},
                             {"1", {"1"}, {call("$src.StartHDMIAnalysis($source)")}},
                             {"2", {"2"}, {call("$src.StopHDMIAnalysis($source)")}},
                             {"99", {"99"}, {leave()}},
                             {"any other", {}, {leave()}}}),
            }),
            destroy("src"),
        }};
    return table;
}

} // namespace walk::tables
