// All of the plug-in's objects together, in front of fakes of everything else: through each menu
// and back.

#include <gtest/gtest.h>

#include <zarn/DebugMenu.h>

#include "Console.h"
#include "FakeConnection.h"
#include "FakeCore.h"
#include "FakeDevice.h"
#include "FakeNorvexAPI.h"

using FakeCore::Reply;

namespace {

const std::string kProcessMenu = "====================================\n"
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
                                 "====================================\n"
                                 "\ncmd> ";

const std::string kTestConsoleMenu = "====================================\n"
                                     "\t[Process Debug List]\t\n"
                                     "------------------------------------\n"
                                     " 1. Reference Count Test\n"
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
                                     " 21. Set boot up service\n"
                                     "------------------------------------\n"
                                     " 99 : Exit\n"
                                     "====================================\n"
                                     "\ncmd> ";

const std::string kMediaMenu = "====================================\n"
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
                               "====================================\n"
                               "\ncmd> ";

const std::string kProviderMenu = "\n====================================\n"
                                  "     [Quarle-Provider Module]\n"
                                  "------------------------------------\n"
                                  " 0: [OFF] QUARLE_PROVIDER  "
                                  "\n====================================\n"
                                  "99 : Exit\n"
                                  "====================================\n"
                                  "cmd> ";

std::string simpleMenu(const std::string& rows) {
    return "\n====================================\n"
           "     [Simple menu]\n"
           "------------------------------------\n"
           "QoS is enabled\n" +
           rows +
           "====================================\n"
           "99 : Exit\n"
           "====================================\n"
           "cmd> ";
}

class WholeConsole : public testing::Test {
protected:
    WholeConsole() {
        FakeCore::reset();
        // Nothing is there.
        FakeDevice::setDirectory("/nonexistent");
    }
    ~WholeConsole() override { FakeCore::reset(); }

    FakeNorvexAPI tv;
    Console console;
};

} // namespace

TEST_F(WholeConsole, GoesThroughEachMenuAndBack) {
    FakeCore::answer("Start", Reply().value(1).text("Norvex> "));
    FakeCore::answer("Execute", Reply().value(1).text("Again> "));
    FakeCore::answer("Execute", Reply().value(0));
    FakeCore::answer("IsQoSEnabled", Reply().value(true));
    FakeCore::answer("GetMenuItems", Reply().value(1).items({{"Tuner", false, 3}}));
    FakeCore::answer("GetMenuItems", Reply().value(1).items({{"Tuner", true, 3}}));
    tv.answer("TunerControl.CheckTunerSignalState", {1});

    console.type("1 items 99 2 3 11 99 4 99 5 10 99 6 7 0 99 99").run(zarn_startmaindebug);

    EXPECT_EQ(console.wordsLeft(), 0u);
    EXPECT_EQ(tv.kept(), std::vector<std::string>{});
    EXPECT_EQ(console.transcript(),
              "DebugUtil\n" + kProcessMenu + "Norvex> Again> " + kProcessMenu +
                  "Command not implemented\n" + kProcessMenu + kMediaMenu +
                  "11\n The input is invalid!! \n" + kMediaMenu + "99\nCommand not implemented\n" +
                  kProcessMenu + kProviderMenu + kProcessMenu + kTestConsoleMenu +
                  " CheckTunerSignalState Success!\n" + kTestConsoleMenu + kProcessMenu +
                  kProcessMenu + simpleMenu("0 : [OFF] Tuner            \n") + "0" +
                  simpleMenu("0 : [ON ] Tuner            \n") + "99" + kProcessMenu);
}

TEST_F(WholeConsole, ProcessMenuAndSimpleMenuShareOneControl) {
    FakeCore::answer("Start", Reply().value(0));
    console.type("1 7 99 1 99").run(zarn_startmaindebug);
    EXPECT_EQ(FakeConnection::alive(), 1);
    for (const std::string& call : console.calls())
        EXPECT_EQ(call.find("NorvexAPIConnection"), std::string::npos) << call;
}

TEST_F(WholeConsole, TestConsoleIsEnteredTwice) {
    console.type("5 9 99 5 99 99").run(zarn_startmaindebug);
    EXPECT_EQ(console.transcript(), "DebugUtil\n" + kProcessMenu + kTestConsoleMenu +
                                        kTestConsoleMenu + kProcessMenu + kTestConsoleMenu +
                                        kProcessMenu);
}
