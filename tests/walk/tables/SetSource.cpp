#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Test7 List - SetSource]\t\n",
           " 1. call [Main Handle] ISourceControl::SetSource(TV Source)  \n"
           " 2. call [Main Handle] ISourceControl::SetSource(HDMI1 Source)  \n"
           " 3. call [PIP Handle] ISourceControl::SetSource(TV Source) \n"
           " 4. call [Main Handle] ISourceControl::SetSource(Component1Source) \n"
           " 5. call [Main Handle] ISourceControl::SetSource(TV Source, 0xfa0000000002002d) \n"
           " 6. call [Clone Handle] ISourceControl::SetSource(TV Source) \n"
           " 7. call [Clone Handle] ISourceControl::SetSource(HDMI Source) \n");

Acts plain(const std::string& arguments) {
    return {create("src", "SourceControl", "1, 0"), call("$src.SetSource(" + arguments + ", \"\")"),
            destroy("src")};
}

Acts bound(const std::string& profile, Acts acts) {
    const Acts binding = {script("window id", "db/tv-viewer/window_id"),
                          note("vconf_get_int(db/tv-viewer/window_id)"),
                          create("video", "VideoControl", profile + ", 0"),
                          call("$video.SetWindowId($windowId)"),
                          destroy("video"),
                          destroy("src")};
    acts.insert(acts.end(), binding.begin(), binding.end());
    return acts;
}

Acts serviceOn(const std::string& profile) {
    return bound(profile,
                 {create("src", "SourceControl", profile + ", 0", Making::MayBeNull),
                  ask("major> ", "major", Form::Channel).whileNull("src", "65535"),
                  choose("major", {{"no channel", {"65535"}, {destroy("src"), again()}},
                                   {"a channel", {}, {}}}),
                  run(findOnAir), call("$src.PreSetSourceA()"), call("$src.PreSetSourceB()"),
                  call("$src.PreSetSourceC()"), call("$src.SetSource(0, $#id, \"\")")});
}

} // namespace

const Table& setSource() {
    static const Table table = {
        "set source",
        {
            loop({
                say(kMenu),
                ask(" select num> ", "n", Form::Command),
                choose(
                    "n",
                    {{"1", {"1"}, plain("0")},
                     {"2", {"2"}, plain("13")},
                     {"3", {"3"}, serviceOn("101")},
                     {"4", {"4"}, plain("7")},
                     {"5", {"5"}, plain("0, 0xfa0000000002002d")},
                     {"6", {"6"}, serviceOn("1")},
                     {"7",
                      {"7"},
                      bound("1", {create("src", "SourceControl", "1, 0"),
                                  call("$src.PreSetSourceA()"), call("$src.PreSetSourceB()"),
                                  call("$src.PreSetSourceC()"), call("$src.SetSource(13, \"\")")})},
                     {"99", {"99"}, {leave()}},
                     // What is no command, or no number, is the tuner.
                     {"no number", {"-1"}, plain("0")},
                     {"any other", {}, plain("0")}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
