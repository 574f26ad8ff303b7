#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Process Debug List]\t\n", " 1. Reference Count Test\n"
                                         " 2. AV Mute Test\n"
                                         " 3. HDMI Anaysis (Capture) test\n"
                                         " 4. GetCurrentTPMSStatus test\n"
                                         " 5. SetTvMode to DTV Air\n"
                                         " 6. SetDTVMode test\n"
                                         " 7. SetSource Test\n"
                                         " 8. RestartVideoDecorder\n"
                                         " 9. Set AVMode test\n"
                                         " 10. Check Tuner Signal Sate\n"
                                         " 11. Get Lastest Channel info\n"
                                         " 12. Preparation Logic Test\n"
                                         " 13. Preparation SetTvMode with service Id Test\n"
                                         " 14. Set Crop Video test\n"
                                         " 15. Check Caption Exist test\n"
                                         " 16. SetPreviewSource\n"
                                         " 17. SIGNAL_TUNE_PREPARATION mechanism\n"
                                         " 18. Epg Data Feeding\n"
                                         " 19. IZoomControl test\n"
                                         " 20. InvalidService test\n"
                                         " 21. Set boot up service\n");

Row pipelineStatus() {
    return {"4",
            {"4"},
            {create("util", "PipelineUtility", "1, 0"), note("TPMSStatus"),
             call("$util.GetCurrentTPMSStatus(true)"),
             script("signal within", "PipelineUtility.GetCurrentTPMSStatus"), note("~TPMSStatus"),
             destroy("util")}};
}

Row tvModeOnAir() {
    return {"5",
            {"5"},
            {create("nav", "ServiceNavigation", "1, 0"), call("$nav.SetTvMode({0, 0}, \"\")"),
             choose("ret", {{"TV mode set", {kAboveZero}, {}},
                            {"TV mode not set", {}, {say(" SetTVMode failed!")}}}),
             destroy("nav")}};
}

Row restartDecoder() {
    return {
        "8",
        {"8"},
        {create("av", "AVControl", "1, 0", Making::MayBeNull),
         choose("av", {{"no control", {"null"}, {}},
                       {"a control", {}, {call("$av.RestartVideoDecoder()"), destroy("av")}}})}};
}

Row tunerSignal() {
    return {"10",
            {"10"},
            {create("tuner", "TunerControl", "1, 0"), call("$tuner.CheckTunerSignalState()"),
             choose("ret", {{"signal", {kAboveZero}, {say(" CheckTunerSignalState Success!\n")}},
                            {"no signal", {}, {say(" CheckTunerSignalState failed!\n")}}}),
             destroy("tuner")}};
}

// An id that is not stored leaves the one before it.
Row latestServices() {
    const std::vector<std::string> ids = {"1", "45", "9223372036854775808", "0", ""};
    const auto latest = [&](const std::string& operation, const std::string& mode) {
        return call("$nav." + operation + "($#id, " + mode + ")");
    };
    const auto given = [&](const std::string& operation) {
        return gives("ServiceNavigation." + operation, "id", ids);
    };
    return {"11",
            {"11"},
            {set("id", kInvalidService),
             create("nav", "ServiceNavigation", "1, 0", Making::MayBeNull),
             choose("nav", {{"no navigation", {"null"}, {}},
                            {"a navigation",
                             {},
                             {
                                 latest("GetLatestServiceId", "{1, 0}"),
                                 given("GetLatestServiceId"),
                                 say("[RF][CABLE] serviceId $id\n"),
                                 latest("GetLatestVeldaServiceId", "{1, 0}"),
                                 given("GetLatestVeldaServiceId"),
                                 say("[VELDA][CABLE] serviceId $id\n"),
                                 latest("GetLatestServiceId", "{0, 0}"),
                                 given("GetLatestServiceId"),
                                 say("[RF][AIR] serviceId $id\n"),
                                 latest("GetLatestVeldaServiceId", "{0, 0}"),
                                 given("GetLatestVeldaServiceId"),
                                 say("[VELDA][AIR] serviceId $id\n"),
                                 destroy("nav"),
                             }}})}};
}

} // namespace

const Table& testConsole() {
    static const Table table = {
        "test console",
        {
            note("g_main_loop_new(NULL, FALSE)"),
            note("CreateSignalSubscriber"),
            set("console", "open"),
            loop({
                say(kMenu),
                ask("cmd> ", "n", Form::Int),
                choose("n", {{"no number", {"bad"}, {}},
                             {"1", {"1"}, {run(referenceCount)}},
                             {"2", {"2"}, {run(mute)}},
                             {"3", {"3"}, {run(hdmiAnalysis)}},
                             pipelineStatus(),
                             tvModeOnAir(),
                             {"6", {"6"}, {run(dtvMode)}},
                             {"7", {"7"}, {run(setSource)}},
                             restartDecoder(),
                             {"9", {"9"}, {}},
                             tunerSignal(),
                             latestServices(),
                             {"12", {"12"}, {run(preparationLogic)}},
                             {"13", {"13"}, {run(setTvMode)}},
                             {"14", {"14"}, {run(cropVideo)}},
                             {"15", {"15"}, {run(caption)}},
                             {"16", {"16"}, {run(setPreviewSource)}},
                             {"17", {"17"}, {run(signalTunePreparation)}},
                             {"18", {"18"}, {run(epgDataFeeding)}},
                             {"19", {"19"}, {run(zoomControl)}},
                             {"20", {"20"}, {run(invalidService)}},
                             {"21", {"21"}, {run(bootupService)}},
                             {"99",
                              {"99"},
                              {set("console", "closed"), note("DestroySignalSubscriber"),
                               note("g_main_loop_quit"), note("join"), leave()}},
                             {"below 0", {"-2147483648..-1"}, {say("Command not recognized\n")}},
                             {"any other", {}, {say("Command not recognized\n")}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
