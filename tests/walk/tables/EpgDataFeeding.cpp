#include "Tables.h"

#include "Frame.h"
#include "ServiceLookup.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Test18 List - Epg Data Feeding]\t\n", " 1. Check if programs available\n"
                                                     " 2. Is Tune Around Needed\n"
                                                     " 3. Start Tune Around\n"
                                                     " 4. Stop Tune Around\n"
                                                     " 5. Is Barker Channel scan available\n"
                                                     " 6. Start Barker Channel scan\n"
                                                     " 7. Stop Barker Channel scan\n");

// What was made before is kept where a factory fails.
Act made(const std::string& factory) {
    return choose("made", {{factory + " works", {"0"}, {}},
                           {factory + " fails", {}, {say(factory + " failed\n"), back()}}});
}

Act subscribe(const std::string& signal) {
    return call("SignalSubscriber.Subscribe(" + signal + ", 0, 702, 0, 0)");
}

Act unsubscribe(const std::string& signal) {
    return call("SignalSubscriber.Unsubscribe(" + signal + ", 702, 0, 0)");
}

Act told(const std::string& operation) {
    return say("\tcalled " + operation + ", ret: $ret\n");
}

Acts together(const std::vector<Acts>& parts) {
    Acts acts;
    for (const Acts& part : parts)
        acts.insert(acts.end(), part.begin(), part.end());
    return acts;
}

Acts described() {
    return together({{script("one less", "without")},
                     readField("4", "  4", "frequency", "-1"),
                     readField("13", " 13", "majorField", "-1"),
                     readField("14", " 14", "minorField", "-1"),
                     {say("\tfreq:$frequency -> $majorField-$minorField: title size: $length\n")}});
}

Acts programmes() {
    return {
        note("GetNavigationCriteria(1, 0)"),
        note("CriteriaHelper.Fetch(12)"),
        note("CriteriaHelper.Fetch(4)"),
        note("CriteriaHelper.Fetch(13)"),
        note("CriteriaHelper.Fetch(14)"),
        script("service list"),
        call("$nav.GetServiceList(0, {-1, -1}, 0, 0)"),
        choose("records", {{"no services", {"0"}, {}}, {"services", {}, {}}}),
        set("without", "$records"),
        eachRecord({
            run(readServiceId),
            script("program"),
            call("$guide.GetCurrentProgram($#id, true)", "data"),
            choose("data", {{"a programme",
                             {kAboveZero},
                             {note("ProgramData.Title(256, 255)"),
                              choose("title",
                                     {{"a title", {"given"}, described()}, {"no title", {}, {}}})}},
                            {"no programme", {}, {}}}),
            note("~ProgramData"),
        }),
        say("\tno data in $without programs\n"),
        eachRecord({note("~ServiceData")}),
        note("~CriteriaHelper"),
    };
}

Act noServices() {
    return choose("services", {{"no services", {"none"}, {again()}}, {"services", {}, {}}});
}

} // namespace

const Table& epgDataFeeding() {
    static const Table table = {
        "EPG data feeding",
        {
            create("scan", "ScanControl", "", Making::Checked),
            made("CreateScanControl"),
            create("guide", "ServiceGuide", "", Making::Checked),
            made("CreateServiceGuide"),
            create("nav", "ServiceNavigation", "1, 0", Making::Checked),
            made("CreateServiceNavigation"),
            loop({
                say(kMenu),
                ask("cmd> ", "n", Form::Command),
                choose(
                    "n",
                    {{"no number", {"-1"}, {}},
                     {"1", {"1"}, programmes()},
                     {"2",
                      {"2"},
                      {run(listServices), noServices(), call("$scan.IsTuneAroundNeeded([$list])"),
                       told("IsTuneAroundNeeded")}},
                     {"3",
                      {"3"},
                      {subscribe("81"), subscribe("193"), subscribe("194"), run(listServices),
                       noServices(), call("$scan.StartTuneAround([$list], \"DebugMenu\")"),
                       script("signal within", "ScanControl.StartTuneAround"),
                       told("StartTuneAround")}},
                     {"4",
                      {"4"},
                      {call("$scan.StopManualScan()"),
                       script("signal within", "ScanControl.StopManualScan"),
                       told("StopManualScan"), unsubscribe("81"), unsubscribe("193"),
                       unsubscribe("194")}},
                     {"5",
                      {"5"},
                      {call("$scan.IsBarkerChannelScanAvailable({-1, -1})"),
                       told("IsBarkerChannelScanAvailable")}},
                     {"6",
                      {"6"},
                      {subscribe("81"), subscribe("195"),
                       call("$scan.StartBarkerChannelScan(\"\", {-1, -1})"),
                       script("signal within", "ScanControl.StartBarkerChannelScan"),
                       told("StartBarkerChannelScan")}},
                     {"7",
                      {"7"},
                      {call("$scan.StopBarkerChannelScan()"),
                       script("signal within", "ScanControl.StopBarkerChannelScan"),
                       told("StopBarkerChannelScan"), unsubscribe("81"), unsubscribe("195")}},
                     {"99", {"99"}, {destroy("nav"), destroy("guide"), destroy("scan"), leave()}},
                     // Always -1, whatever was typed.
                     {"any other", {}, {say("unsupported command: -1\n")}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
