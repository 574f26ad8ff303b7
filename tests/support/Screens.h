#pragma once

#include <string>
#include <utility>
#include <vector>

// The expected screens, each once, written from what the console promises to its users. No text is
// taken from the sources.
namespace screens {

inline const std::string kRule = "====================================\n";
inline const std::string kLine = "------------------------------------\n";

// The frame that most menus share.
inline std::string Framed(const std::string& title, const std::string& items) {
    return kRule + title + kLine + items + kLine + " 99 : Exit\n" + kRule;
}

inline const std::string kProcessMenu = Framed("\t[Process Debug List]\t\n", " 1. Norvex\n"
                                                                             " 2. TV Player\n"
                                                                             " 3. TV Plug in\n"
                                                                             " 4. Quarle-Provider\n"
                                                                             " 5. Norvex Debug\n"
                                                                             " 6. Norvex LUMO Debug\n"
                                                                             " 7. Simple Debug\n");

inline const std::string kMediaMenu = Framed("\t[GST Debug Log ON]\t\n", "  0. GST_VIDEO_SINK\n"
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
                                                                         " 11. GST_FPA_PARSER\n");

// The provider log switch, whose list and prompt are the whole screen.
inline std::string ProviderList(const std::string& state) {
    return "\n" + kRule + "     [Quarle-Provider Module]\n" + kLine + " 0: [" + state + "] QUARLE_PROVIDER  \n" +
           kRule + "99 : Exit\n" + kRule + "cmd> ";
}
inline const std::string kProviderPrompt = "QUARLE_DAEMON ==> ON[1]/OFF[0]: ";

// The simple menu with these rows, each with its line end.
inline std::string SimpleMenu(const std::string& qos, const std::string& rows) {
    return "\n" + kRule + "     [Simple menu]\n" + kLine + qos + rows + kRule + "99 : Exit\n" + kRule;
}

// The pipeline test console. The title is the process menu's.
inline const std::string kTestConsole =
    Framed("\t[Process Debug List]\t\n", " 1. Reference Count Test\n"
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

inline const std::string kReferenceCount =
    Framed("\t[Test1 List - Reference Count]\t\n", " 1. Call GetReferenceCount() \n");

inline const std::string kMute = Framed("\t[Test1 List - Video Mute Control]\t\n", " 1. call IAVControl::MuteVudio \n"
                                                                                   " 2. call IAVControl::MuteAudio \n");

// The title is that of the mute test.
inline const std::string kHdmiAnalysis =
    Framed("\t[Test1 List - Video Mute Control]\t\n", " 1. call ISourceControl::StartHDMIAnalysis \n"
                                                      " 2. call ISourceControl::StopHDMIAnalysis \n");

inline const std::string kDtvMode =
    Framed("\t[Test6 List - DTV Mode Test]\t\n", " 1. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,true) \n"
                                                 " 2. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,false) \n"
                                                 " 3. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,true) \n"
                                                 " 4. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,false) \n"
                                                 " 5. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,true) \n"
                                                 " 6. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,false) \n"
                                                 " 7. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,true) \n"
                                                 " 8. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,false) \n");

inline const std::string kSetSource =
    Framed("\t[Test7 List - SetSource]\t\n",
           " 1. call [Main Handle] ISourceControl::SetSource(TV Source)  \n"
           " 2. call [Main Handle] ISourceControl::SetSource(HDMI1 Source)  \n"
           " 3. call [PIP Handle] ISourceControl::SetSource(TV Source) \n"
           " 4. call [Main Handle] ISourceControl::SetSource(Component1Source) \n"
           " 5. call [Main Handle] ISourceControl::SetSource(TV Source, 0xfa0000000002002d) \n"
           " 6. call [Clone Handle] ISourceControl::SetSource(TV Source) \n"
           " 7. call [Clone Handle] ISourceControl::SetSource(HDMI Source) \n");

inline const std::string kPreparationLogic =
    Framed("\t[Test13 List - Preparation Logic Test]\t\n",
           " 1. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SERVICE \n"
           " 2. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SERVICE \n"
           " 3. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SERVICE \n"
           " 4. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SERVICE \n"
           " ========================================================================= \n"
           " 5. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SOURCE \n"
           " 6. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SOURCE \n"
           " 7. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SOURCE \n"
           " 8. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SOURCE \n");

// No line above the items.
inline const std::string kSetTvMode = kRule +
                                      "\t[Test14 List - SetTvMode with ServiceId Test]\t\n"
                                      " RF case:    \n"
                                      " 1.  SetTvMode(Air, ch) \n"
                                      " 2.  SetTvMode(Cable, ch) \n"
                                      " 3.  SetTvMode(Satellite, ch) \n"
                                      " VC case:    \n"
                                      " 4.  SetTvMode(Air, ch) \n"
                                      " 5.  SetTvMode(Cable, ch) \n"
                                      " 6.  SetTvMode(Satellite, ch) \n" +
                                      kLine + " 99 : Exit\n" + kRule;

inline const std::string kPreviewSource =
    Framed("\t[Test17 List - SetPreviewSource]\t\n",
           " 1. call [Main Handle] ISourceControl::SetPreviewSource(ESource)  \n"
           " 2. call [Main Handle] ISourceControl::SetPreviewSource(ESource, Major)  \n");

// Its rules are a blank and 86 signs.
inline const std::string kWideRule = " " + std::string(86, '=') + "\n";
inline const std::string kWideLine = " " + std::string(86, '-') + "\n";
inline const std::string kSignalTunePreparation =
    kWideRule + "\t      [Test18 List - SignalTunePreparationMechanism (AIR/CABLE/SAT)]\n" + kWideLine +
    " 1. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App1)\n"
    " 2. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App1)\n"
    " 3. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App1)\n" +
    kWideRule +
    " 4. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App2)\n"
    " 5. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App2)\n"
    " 6. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App2)\n" +
    kWideRule + " 7. call [Main Handle] CheckPendingState(STATE_CHANGE_SERVICE) \n" + kWideLine + " 99 : Exit\n" +
    kWideRule;

inline const std::string kEpgDataFeeding =
    Framed("\t[Test18 List - Epg Data Feeding]\t\n", " 1. Check if programs available\n"
                                                     " 2. Is Tune Around Needed\n"
                                                     " 3. Start Tune Around\n"
                                                     " 4. Stop Tune Around\n"
                                                     " 5. Is Barker Channel scan available\n"
                                                     " 6. Start Barker Channel scan\n"
                                                     " 7. Stop Barker Channel scan\n");

inline const std::string kZoomControl =
    Framed("\t[Test19 List - IZoomControl]\t\n", " 1. Check if zoom available\n"
                                                 " 2. Check available zoom sharing type\n"
                                                 " 3. Create zoom window\n"
                                                 " 4. Delete zoom window\n"
                                                 " 5. Set zoom window (ON/OFF)\n"
                                                 " 6. Mute/unmute zoom window\n"
                                                 " 7. Check if zoom window started\n"
                                                 " 8. Check if zoom window muted\n"
                                                 " 9. Set zoom window src-dst\n"
                                                 " 10. Get connected zoom windows\n");

inline const std::string kInvalidService =
    Framed("\t[Test20 List - InvalidServiceTest]\t\n", " 1. SetService(INVALID_SERVICE_ID)\n"
                                                       " 2. SetSource(INVALID_SERVICE_ID)\n");

// Screens and their names in an expected dialogue.
using Names = std::vector<std::pair<std::string, std::string>>;

// `dialogue` with each text that has a name replaced by it, in the order of `names`.
inline std::string Abbreviated(std::string dialogue, const Names& names) {
    for (const auto& [text, name] : names) {
        for (std::size_t at = 0; (at = dialogue.find(text, at)) != std::string::npos; at += name.size())
            dialogue.replace(at, text.size(), name);
    }
    return dialogue;
}

} // namespace screens
