#include "Tables.h"

namespace walk::tables {

namespace {

const std::string kMenu = "====================================\n"
                          "\t[Process Debug List]\t\n"
                          "------------------------------------\n"
                          " 1. Norvex\n"
                          " 2. TV Player\n"
                          " 3. TV Plug in\n"
                          " 4. Quarle-Provider\n"
                          " 5. Norvex Debug\n"
                          " 6. Norvex LUMO Debug\n"
                          " 7. Simple Debug\n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n";

Act notImplemented() {
    return say("Command not implemented\n");
}

} // namespace

const Table& processMenu() {
    static const Table table = {
        "process menu",
        {
            note("stat(quarle-provider/data/FCdebug.conf)"),
            choose("marker", {{"log was on", {"there"}, {set("log", "ON ")}},
                              {"log was off", {}, {set("log", "OFF")}}}),
            set("screen", ""),
            say("DebugUtil\n"),
            loop({
                say(kMenu + "\n"),
                ask("cmd> ", "n", Form::Digits),
                choose("n",
                       {
                           {"no number", {"bad"}, {}},
                           {"0", {"0"}, {notImplemented()}},
                           {"1", {"1"}, {run(controlDialogue)}},
                           {"2", {"2"}, {notImplemented()}},
                           // The way out of this menu leads on to the look-up of its number.
                           {"3", {"3"}, {run(mediaLogMenu), notImplemented()}},
                           {"4", {"4"}, {run(providerLogMenu)}},
                           {"5", {"5"}, {run(testConsole)}},
                           {"6",
                            {"6"},
                            {script("open library"),
                             note("TCDebugMenuUtility::OpenLibrary(/usr/lib64/"
                                  "liblumo-debugmenu.so, lumo_subdebugmenu)")}},
                           {"7", {"7"}, {run(simpleMenu)}},
                           {"99", {"99"}, {leave()}},
                           {"below 0", {"-2147483648..-1"}, {notImplemented()}},
                           {"any other", {}, {notImplemented()}},
                       }),
            }),
        }};
    return table;
}

} // namespace walk::tables
