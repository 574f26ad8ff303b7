#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

const Table& invalidService() {
    static const Table table = {
        "invalid service",
        {
            create("nav", "ServiceNavigation", "1, 0", Making::Checked),
            choose("made",
                   {{"navigation made", {"0"}, {}},
                    {"no navigation", {}, {say("CreateServiceNavigation failed\n"), back()}}}),
            create("src", "SourceControl", "1, 0", Making::Checked),
            // The navigation is kept.
            choose("made",
                   {{"source control made", {"0"}, {}},
                    {"no source control", {}, {say("CreateSourceControl failed\n"), back()}}}),
            loop({
                say(framed("\t[Test20 List - InvalidServiceTest]\t\n",
                           " 1. SetService(INVALID_SERVICE_ID)\n"
                           " 2. SetSource(INVALID_SERVICE_ID)\n")),
                ask("cmd> ", "n", Form::Command),
                choose("n",
                       {{"no number", {"-1"}, {}},
                        {"1", {"1"}, {call("$nav.SetService(0xffffffffffffffff, 0, 0, \"\")")}},
                        {"2", {"2"}, {call("$src.SetSource(0, 0xffffffffffffffff, \"\")")}},
                        {"99", {"99"}, {destroy("nav"), destroy("src"), leave()}},
                        // Always -1, whatever was typed.
                        {"any other", {}, {say("unsupported command: -1\n")}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
