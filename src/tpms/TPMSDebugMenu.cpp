#include "TPMSDebugMenu.h"

#include <iostream>
#include <thread>

#include <glib.h>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/Signal.h>

#include "MainMenuItems.h"
#include "MenuText.h"
#include "SignalLine.h"

namespace {

// Test scripts know these numbers. They differ from those in the names of the m_Start_Test
// members, and 9 is listed although it does nothing.
constexpr char kMainTitle[] = "\t[Process Debug List]\t\n";
constexpr char kMainItems[] = " 1. Reference Count Test\n"
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
                              " 21. Set boot up service\n";

// Called by the middleware on the thread that Enter() starts. Takes no lock: a line is written in
// one piece, but may appear in the middle of a menu.
int NorvexSignalCallback(ESignalType type, EProfile profile, unsigned short screenId, TSSignalData data,
                         void* /*userData*/) {
    const std::string line = signalLine(type, profile, screenId, data);
    if (!line.empty()) {
        std::cout << line << std::flush;
    }
    return 0;
}

} // namespace

TCDebugMenuTPMS::TCDebugMenuTPMS() : m_pSignalSubscriber(nullptr) {}

void TCDebugMenuTPMS::m_PrintMainMenu() {
    std::cout << framedMenu(kMainTitle, kMainItems) << std::endl;
}

void TCDebugMenuTPMS::Enter() {
    // Never unreferenced: each entry leaves its loop behind.
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    std::thread signalThread([&loop] { g_main_loop_run(loop); });
    NorvexAPI::CreateSignalSubscriber(NorvexSignalCallback, &m_pSignalSubscriber);

    while (true) {
        m_PrintMainMenu();
        std::cout << "cmd> " << std::flush;
        std::string word;
        std::cin >> word;
        // The stream stays failed: at end of input the menu repeats for ever.
        if (std::cin.fail()) {
            continue;
        }
        bool ok = false;
        const int command = m_StrToInt(word, &ok);
        if (!ok) {
            continue;
        }
        if (command == 99) {
            break;
        }
        m_RunMainItem(command);
    }

    NorvexAPI::DestroySignalSubscriber(NorvexSignalCallback);
    // A quit before the new thread has reached its run is lost, and the join would wait for ever.
    // Once the loop counts as running, the quit counts too, even while the thread still waits for
    // another one to release the default context.
    while (!g_main_loop_is_running(loop)) {
        std::this_thread::yield();
    }
    g_main_loop_quit(loop);
    signalThread.join();
}

void TCDebugMenuTPMS::m_RunMainItem(int command) {
    switch (command) {
    case 1: m_Start_Test1_ReferenceCount(); break;
    case 2: m_Start_Test2_MuteControl(); break;
    case 3: m_Start_Test3_HDMIAnalysis(); break;
    case 4: checkCurrentTPMSStatus(); break;
    case 5: setTvModeToDTVAir(); break;
    case 6: m_Start_Test6_SetDTVMode(); break;
    case 7: m_Start_Test7_SetSource(); break;
    case 8: restartVideoDecoder(); break;
    case 9: break;
    case 10: checkTunerSignal(); break;
    case 11: printLatestServiceIds(); break;
    case 12: m_Start_Test13_PreparationLogicTest(); break;
    case 13: m_Start_Test14_SetTvModeTest(); break;
    case 14: m_Start_Test15_SetCropVideoTest(); break;
    case 15: m_Start_Test16_CheckCaptionExistTest(); break;
    case 16: m_Start_Test17_SetPrevieSource(); break;
    case 17: m_Start_Test18_SignalTunePreparationMechanism(); break;
    case 18: m_EpgDataFeeding(); break;
    case 19: m_ZoomControlTest(); break;
    case 20: m_InvalidServiceTest(); break;
    case 21: m_SetBootupService(); break;
    default: std::cout << "Command not recognized" << std::endl; break;
    }
}
