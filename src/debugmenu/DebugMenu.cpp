#include "DebugMenu.h"

#include <iostream>
#include <map>
#include <type_traits>

#include <norvex/core/DebugMenuUtility.h>
#include <zarn/DebugServiceAPI.h>

#include "GstPluginDebug.h"
#include "MenuText.h"
#include "QuarleDebugMenu.h"
#include "WordNumber.h"

// All state of the console, in the order of its construction at load. Only the simple menu is
// destroyed, and the shared debug print control with it.
// NOLINTNEXTLINE(cert-err58-cpp): built at load, as the host expects.
TCDebugMenuTPMS debugMenuTPMS;
static_assert(std::is_trivially_destructible_v<TCDebugMenuTPMS>);
// NOLINTNEXTLINE(cert-err58-cpp): built at load, as the host expects.
TCDebugMenuSimple debugMenuSimple;
int currentMenu = 0;
bool QuarleLogonOff = false;
bool StatusForquarleDebug = false;
int m_child_Pid = 0;

namespace {

constexpr char kProcessRows[] = " 1. Norvex\n"
                                " 2. TV Player\n"
                                " 3. TV Plug in\n"
                                " 4. Quarle-Provider\n"
                                " 5. Norvex Debug\n"
                                " 6. Norvex LUMO Debug\n"
                                " 7. Simple Debug\n";

// What one dialogue leaves to the next.
struct TSDialogue {
    // The control that was last asked to start.
    IDebugPrintControl* m_pControl = nullptr;
    // A process that sends no screen leaves the last one showing.
    std::string m_screen;
};

// Relays words until the dialogue ends: to the provider log switch menu while that is open, else to
// the control.
void RunDialogue(TSDialogue& dialogue) {
    while (true) {
        std::cout << dialogue.m_screen << std::flush;
        std::string word;
        std::cin >> word;
        // The stream stays failed, here as in the process menu: at end of input the screen repeats
        // for ever.
        if (std::cin.fail())
            continue;

        if (StatusForquarleDebug) {
            dialogue.m_screen = ParserQuarleCommand(word);
            // The text counts, not the number: "099" stays.
            if (word == "99") {
                StatusForquarleDebug = false;
                return;
            }
            continue;
        }
        if (dialogue.m_pControl == nullptr)
            return;
        if (dialogue.m_pControl->Execute(word, dialogue.m_screen) <= 0) {
            dialogue.m_pControl->Stop();
            return;
        }
        std::cout << std::flush;
    }
}

// Opens the dialogue with the process that has this number in the process menu.
void RunProcess(const std::map<int, IDebugPrintControl*>& debugPrintControls, int number, TSDialogue& dialogue) {
    const auto entry = debugPrintControls.find(number);
    if (entry == debugPrintControls.end() || entry->second == nullptr) {
        std::cout << "Command not implemented" << std::endl;
        return;
    }
    dialogue.m_pControl = entry->second;
    if (dialogue.m_pControl->Start(dialogue.m_screen) > 0) {
        RunDialogue(dialogue);
        return;
    }
    std::cout << "Failed to start selected[" << number << "] debug print control" << std::endl;
    // Meant: a second line.
    std::cout << "Command not implemented" << std::endl;
}

} // namespace

std::string CreateDebugUtilMenu() {
    return framedMenu("\t[Process Debug List]\t\n", kProcessRows);
}

void zarn_startmaindebug(void) {
    CheckQuarleLogOnOff();

    // By process menu number; Norvex alone has one.
    std::map<int, IDebugPrintControl*> debugPrintControls{{1, nullptr}};
    DebugServiceAPI::CreateService(&debugPrintControls[1]);

    const std::string menu = CreateDebugUtilMenu();
    std::cout << "DebugUtil" << std::endl;

    TSDialogue dialogue;
    while (true) {
        std::cout << menu << std::endl;
        std::cout << "cmd> " << std::flush;
        std::string word;
        std::cin >> word;
        if (std::cin.fail() || !TCDebugMenuUtility::IsNumber(word))
            continue;

        const int number = WordNumber(word);
        if (number == 99)
            return;
        switch (number) {
        case 3:
            // Meant: there is no control 3, so that leaving this menu says "Command not
            // implemented".
            if (GstPluginDebugFunction() == 0)
                RunProcess(debugPrintControls, number, dialogue);
            break;
        case 4:
            dialogue.m_screen = GetQuarleDebugMenu();
            StatusForquarleDebug = true;
            RunDialogue(dialogue);
            break;
        case 5: debugMenuTPMS.Enter(); break;
        case 6: TCDebugMenuUtility::OpenLibrary("/usr/lib64/liblumo-debugmenu.so", "lumo_subdebugmenu"); break;
        case 7: debugMenuSimple.Enter(); break;
        default: RunProcess(debugPrintControls, number, dialogue); break;
        }
    }
}
