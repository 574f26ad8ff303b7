#include "TPMSDebugMenu.h"

#include <iostream>
#include <thread>

#include <glib.h>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/Signal.h>

#include "MainMenuChecks.h"
#include "MenuText.h"
#include "SignalLine.h"

namespace {

// The numbering is what the test scripts know: it is not that of the tests' names, and 9 is listed
// though it does nothing.
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

// Called by the middleware on the thread that Enter() starts. Takes no lock: a line is inserted
// whole, but may stand in the middle of a menu.
int NorvexSignalCallback(ESignalType type, EProfile profile, unsigned short screenId,
                         TSSignalData data, void* /*userData*/) {
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

    std::string word;
    bool left = false;
    while (!left) {
        m_PrintMainMenu();
        std::cout << "cmd> " << std::flush;
        std::cin >> word;
        if (std::cin.fail()) {
            // The stream stays failed: at the end of input the menu repeats for ever.
            continue;
        }
        bool ok = false;
        const int command = m_StrToInt(word, &ok);
        if (!ok) {
            continue;
        }
        switch (command) {
        case 1:
            m_Start_Test1_ReferenceCount();
            break;
        case 2:
            m_Start_Test2_MuteControl();
            break;
        case 3:
            m_Start_Test3_HDMIAnalysis();
            break;
        case 4:
            checkCurrentTPMSStatus();
            break;
        case 5:
            setTvModeToDTVAir();
            break;
        case 6:
            m_Start_Test6_SetDTVMode();
            break;
        case 7:
            m_Start_Test7_SetSource();
            break;
        case 8:
            restartVideoDecoder();
            break;
        case 9:
            break;
        case 10:
            checkTunerSignal();
            break;
        case 11:
            printLatestServiceIds();
            break;
        case 12:
            m_Start_Test13_PreparationLogicTest();
            break;
        case 13:
            m_Start_Test14_SetTvModeTest();
            break;
        case 14:
            m_Start_Test15_SetCropVideoTest();
            break;
        case 15:
            m_Start_Test16_CheckCaptionExistTest();
            break;
        case 16:
            m_Start_Test17_SetPrevieSource();
            break;
        case 17:
            m_Start_Test18_SignalTunePreparationMechanism();
            break;
        case 18:
            m_EpgDataFeeding();
            break;
        case 19:
            m_ZoomControlTest();
            break;
        case 20:
            m_InvalidServiceTest();
            break;
        case 21:
            m_SetBootupService();
            break;
        case 99:
            left = true;
            break;
        default:
            std::cout << "Command not recognized" << std::endl;
            break;
        }
    }

    NorvexAPI::DestroySignalSubscriber(NorvexSignalCallback);
    // A quit that comes before the new thread has reached its run is lost, and the join would wait
    // for ever. Once the loop is said to run, the quit counts, also while the thread still waits
    // for another one to let go of the default context.
    while (!g_main_loop_is_running(loop)) {
        std::this_thread::yield();
    }
    g_main_loop_quit(loop);
    signalThread.join();
}
