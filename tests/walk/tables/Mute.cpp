#include "Tables.h"

#include "BasicControls.h"
#include "Frame.h"

namespace walk::tables {

const Table& mute() {
    static const Table table = {
        "mute", after(screenAsked(),
                      {
                          create("av", "AVControl", "1, $screenId", Making::MayBeNull),
                          loop({
                              say(framed("\t[Test1 List - Video Mute Control]\t\n",
                                         " 1. call IAVControl::MuteVudio \n"
                                         " 2. call IAVControl::MuteAudio \n")),
                              ask("cmd> ", "n", Form::Command).whileNull("av", "99"),
                              choose("n", {{"no number", {"-1"}, {again()}}, {"a number", {}, {}}}),
                              // Asked for whatever the command is, the one that leaves included.
                              ask("Off:0 / On:1 ", "on", Form::Command),
                              choose("on", {{"no value", {"-1"}, {again()}}, {"a value", {}, {}}}),
                              choose("n", {{"1", {"1"}, {call("$av.MuteVideo($on)")}},
                                           {"2", {"2"}, {call("$av.MuteAudio($on)")}},
                                           {"99", {"99"}, {destroy("av"), leave()}},
                                           {"any other", {}, {}}}),
                          }),
                      })};
    return table;
}

} // namespace walk::tables
