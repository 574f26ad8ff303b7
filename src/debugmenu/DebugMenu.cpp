#include "DebugMenu.h"

#include <iostream>
#include <map>
#include <type_traits>

#include <norvex/core/DebugMenuUtility.h>
#include <zarn/DebugServiceAPI.h>

#include "GstPluginDebug.h"
#include "MenuFrame.h"
#include "QuarleDebugMenu.h"
#include "WordNumber.h"

// All state of the console, in the order of its construction at load. The simple menu is the only
// one that is destroyed: the shared debug print control goes with it.
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

// Shows `screen` and relays words until the dialogue ends: to the provider log switch menu while
// that is open, else to `control`.
void RunDialogue(IDebugPrintControl* control, std::string& screen, std::string& word) {
    while (true) {
        std::cout << screen << std::flush;
        std::cin >> word;
        // Never cleared, here as in the process menu: at the end of input the screen repeats for
        // ever.
        if (std::cin.fail())
            continue;

        if (StatusForquarleDebug) {
            screen = ParserQuarleCommand(word);
            // The text counts, not the number: "099" stays.
            if (word == "99") {
                StatusForquarleDebug = false;
                return;
            }
            continue;
        }
        if (control == nullptr)
            return;
        if (control->Execute(word, screen) <= 0) {
            control->Stop();
            return;
        }
        std::cout << std::flush;
    }
}

} // namespace

std::string CreateDebugUtilMenu() {
    std::string menu = kFrameRule;
    menu += "\t[Process Debug List]\t\n";
    menu += kSectionRule;
    menu += kProcessRows;
    menu += kSectionRule;
    menu += kExitRow;
    menu += kFrameRule;
    return menu;
}

void zarn_startmaindebug(void) {
    CheckQuarleLogOnOff();

    // Debug print controls by process menu number. Norvex alone has one.
    std::map<int, IDebugPrintControl*> debugPrintControls{{1, nullptr}};
    DebugServiceAPI::CreateService(&debugPrintControls[1]);

    const std::string menu = CreateDebugUtilMenu();
    std::cout << "DebugUtil" << std::endl;

    // The control that was last asked to start.
    IDebugPrintControl* control = nullptr;
    // Kept from one dialogue to the next: a process that sends no screen leaves the last one
    // showing.
    std::string screen;
    std::string word;
    while (true) {
        std::cout << menu << std::endl;
        std::cout << "cmd> " << std::flush;
        std::cin >> word;
        if (std::cin.fail())
            continue;
        if (!TCDebugMenuUtility::IsNumber(word))
            continue;

        const int number = WordNumber(word);
        if (number == 99)
            return;
        switch (number) {
        case 3:
            if (GstPluginDebugFunction() != 0)
                continue;
            // Meant: falls to the table below, so that leaving that menu says "Command not
            // implemented".
            break;
        case 4:
            screen = GetQuarleDebugMenu();
            StatusForquarleDebug = true;
            RunDialogue(control, screen, word);
            continue;
        case 5:
            debugMenuTPMS.Enter();
            continue;
        case 6:
            TCDebugMenuUtility::OpenLibrary("/usr/lib64/liblumo-debugmenu.so", "lumo_subdebugmenu");
            continue;
        case 7:
            debugMenuSimple.Enter();
            continue;
        default:
            break;
        }

        const auto entry = debugPrintControls.find(number);
        if (entry == debugPrintControls.end() || entry->second == nullptr) {
            std::cout << "Command not implemented" << std::endl;
            continue;
        }
        control = entry->second;
        if (control->Start(screen) > 0) {
            RunDialogue(control, screen, word);
            continue;
        }
        std::cout << "Failed to start selected[" << number << "] debug print control" << std::endl;
        // Meant: a second line.
        std::cout << "Command not implemented" << std::endl;
    }
}
