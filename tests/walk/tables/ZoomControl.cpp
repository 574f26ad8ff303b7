#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Test19 List - IZoomControl]\t\n", " 1. Check if zoom available\n"
                                                 " 2. Check available zoom sharing type\n"
                                                 " 3. Create zoom window\n"
                                                 " 4. Delete zoom window\n"
                                                 " 5. Set zoom window (ON/OFF)\n"
                                                 " 6. Mute/unmute zoom window\n"
                                                 " 7. Check if zoom window started\n"
                                                 " 8. Check if zoom window muted\n"
                                                 " 9. Set zoom window src-dst\n"
                                                 " 10. Get connected zoom windows\n");

// Four prompts; `rectangle` has the record as a call shows it.
Acts rectangle(const std::string& prompt, const std::string& rectangle) {
    return {ask(prompt + "X = ", "x", Form::Command), ask(prompt + "Y = ", "y", Form::Command),
            ask(prompt + "Width = ", "width", Form::Command),
            ask(prompt + "Height = ", "height", Form::Command),
            set(rectangle, "{$x, $y, $width, $height}")};
}

Acts together(const std::vector<Acts>& parts) {
    Acts acts;
    for (const Acts& part : parts)
        acts.insert(acts.end(), part.begin(), part.end());
    return acts;
}

Acts three() {
    return together({rectangle("Src", "src"), rectangle("Dst", "dst"), rectangle("Main", "main")});
}

Act windowId() {
    return ask("WindowId = ", "windowId", Form::Command);
}

// What is not 0 is on.
Acts onOff() {
    return {ask("OnOff (1/0) = ", "value", Form::Command),
            choose("value", {{"off", {"0"}, {set("on", "false")}},
                             {"on", {"1"}, {set("on", "true")}},
                             {"on by another number", {}, {set("on", "true")}}})};
}

// An operation that tells a flag, which is false before it.
Acts flag(const std::string& operation, const std::string& before, const std::string& words) {
    return {set("flag", "0"), call("$zoom." + operation + "(" + before + "false)"),
            gives("ZoomControl." + operation, "flag", {"", "0", "1", "1"}),
            say(words + "[$flag] API ret[$ret]\n")};
}

Acts connectedWindows() {
    return {
        script("zoom windows"),
        call("$zoom.GetConnectedZoomWindows([])"),
        // No closing bracket.
        say("GetConnectedZoomWindows API ret[$ret\n"),
        say("Connected window ids = ["),
        eachWindow({say("$window, ")}),
        say("]\n"),
    };
}

} // namespace

const Table& zoomControl() {
    static const Table table = {
        "zoom control",
        {
            create("zoom", "ZoomControl", "1, 0", Making::Checked),
            choose("made", {{"creation works", {"0"}, {}},
                            {"creation fails",
                             {},
                             {say("ZoomControl interface creation failed!\n"), back()}}}),
            loop({
                say(kMenu),
                ask("cmd> ", "n", Form::Command),
                choose(
                    "n",
                    {{"no number", {"-1"}, {}},
                     {"1", {"1"}, flag("IsZoomAvailable", "", "Zoom available")},
                     {"2",
                      {"2"},
                      {set("sharing", "0"), call("$zoom.GetZoomSharingType(0)"),
                       gives("ZoomControl.GetZoomSharingType", "sharing",
                             {"", "1", "3", "-1", "2147483647"}),
                       say("Zoom sharing available type[$sharing] API ret[$ret]\n")}},
                     {"3",
                      {"3"},
                      together({three(),
                                {set("handle", "-1"),
                                 call("$zoom.CreateZoomWindow(-1, $src, $dst, $main)"),
                                 gives("ZoomControl.CreateZoomWindow", "handle",
                                       {"", "0", "1", "42", "-2147483648"}),
                                 say("Created window handle[$handle] API ret[$ret]\n")}})},
                     {"4",
                      {"4"},
                      together({{windowId()},
                                rectangle("Main", "main"),
                                {call("$zoom.DeleteZoomWindow([$windowId], $main)"),
                                 say("Window destroy! API ret[$ret]\n")}})},
                     {"5",
                      {"5"},
                      together({{windowId()},
                                onOff(),
                                {call("$zoom.SetZoomWindow([$windowId], $on)"),
                                 say("Window set! API ret[$ret]\n")}})},
                     // Muted also where it is unmuted.
                     {"6",
                      {"6"},
                      together({{windowId()},
                                onOff(),
                                {call("$zoom.MuteZoomWindow([$windowId], $on)"),
                                 say("Window muted! API ret[$ret]\n")}})},
                     {"7",
                      {"7"},
                      together({{windowId()},
                                flag("IsZoomWindowStarted", "$windowId, ", "Is window started")})},
                     {"8",
                      {"8"},
                      together({{windowId()},
                                flag("IsZoomWindowMuted", "$windowId, ", "Is window muted")})},
                     {"9",
                      {"9"},
                      together({{windowId()},
                                three(),
                                {call("$zoom.SetZoomWindowRect($windowId, $src, $dst, $main)"),
                                 say("Window size updated! API ret[$ret]\n")}})},
                     {"10", {"10"}, connectedWindows()},
                     {"99", {"99"}, {destroy("zoom"), leave()}},
                     {"0", {"0"}, {say("Unsupported command!\n")}},
                     {"any other", {}, {say("Unsupported command!\n")}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
