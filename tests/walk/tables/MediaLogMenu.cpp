#include "Tables.h"

namespace walk::tables {

namespace {

const std::string kMenu = "====================================\n"
                          "\t[GST Debug Log ON]\t\n"
                          "------------------------------------\n"
                          "  0. GST_VIDEO_SINK\n"
                          "  1. GST_VIDEO_DEC\n"
                          "  2. GST_TUNER\n"
                          "  3. GST_TUNER_INFO\n"
                          "  4. GST_AUDIO_SINK\n"
                          "  5. GST_AUDIO_DEC\n"
                          "  6. GST_CI\n"
                          "  7. GST_DEMUXER\n"
                          "  8. GST_DRM_SINK\n"
                          "  9. GST_EXT_AUDIO\n"
                          " 10. GST_EXT_VIDEO\n"
                          " 11. GST_FPA_PARSER\n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n";

Row viewer(const std::string& number, const std::string& element) {
    return {number, {number}, {set("element", element), run(logViewer)}};
}

} // namespace

// A viewer for the row's element; in a machine without the program the child ends by itself, in one
// without room for a process there is none.
const Table& logViewer() {
    static const Table table = {
        "log viewer",
        {
            say("[GST Debug Log ON] ExecuteLogOn : $element\n"),
            note("vfork"),
            choose("viewers", {{"there",
                                {"there"},
                                {note("child: execl(/usr/bin/dlogutil; dlogutil, $element)")}},
                               {"missing",
                                {"missing"},
                                {note("child: execl(/usr/bin/dlogutil; dlogutil, $element)"),
                                 note("child: _exit(1)")}},
                               {"no process", {}, {}}}),
        }};
    return table;
}

const Table& mediaLogMenu() {
    static const Table table = {
        "media log menu",
        {
            loop({
                say(kMenu + "\n"),
                ask("cmd> ", "row", Form::DigitsOnly),
                choose("row", {{"no number", {"bad"}, {again()}}, {"a number", {}, {}}}),
                say("$row\n"),
                choose("row", {viewer("0", "tvvideosink"),
                               viewer("1", "tvvideodec"),
                               viewer("2", "tvvideodec"),
                               viewer("3", "tvtunerinfosrc"),
                               viewer("4", "tvaudiosink"),
                               viewer("5", "tvaudiodec"),
                               viewer("6", "tvdemuxer"),
                               viewer("7", "tvdrmsink"),
                               viewer("8", "extaudiosrc"),
                               viewer("9", "extvideosrc"),
                               viewer("10", "tvfpaparser"),
                               {"11", {"11"}, {say(" The input is invalid!! \n")}},
                               {"99", {"99"}, {leave()}},
                               {"any other", {}, {say(" The input is invalid!! \n")}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
