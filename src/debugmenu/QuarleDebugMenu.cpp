#include "QuarleDebugMenu.h"

#include <cstdio>

#include <sys/stat.h>

#include <norvex/core/DebugMenuUtility.h>
#include <norvex/device/LogTags.h>
#include <norvex/device/PathResolver.h>

#include "MenuText.h"
#include "WordNumber.h"

namespace {

constexpr int kListScreen = 0;
constexpr int kPromptScreen = 1;

constexpr char kDaemonTag[] = "quarle-daemon";
constexpr char kProviderTag[] = "quarle-provider";

// The file whose presence means "on", so that the switch survives a restart. Its content does not
// matter.
std::string MarkerFile() {
    return TCPathResolver::GetAbsolutePath(DEVICE_DIRECTORY_DATA, "quarle-provider/data/FCdebug.conf");
}

// Switching off is switching on in reverse order. Failures are ignored: the tags follow the switch
// even without the file.

void SwitchLogOn() {
    if (std::FILE* marker = std::fopen(MarkerFile().c_str(), "w"))
        static_cast<void>(std::fclose(marker));
    startdlogtagbydefault(kDaemonTag);
    startdlogtagbydefault(kProviderTag);
}

void SwitchLogOff() {
    stopdlogtagbydefault(kDaemonTag);
    stopdlogtagbydefault(kProviderTag);
    static_cast<void>(std::remove(MarkerFile().c_str()));
}

} // namespace

void CheckQuarleLogOnOff() {
    struct stat marker;
    QuarleLogonOff = stat(MarkerFile().c_str(), &marker) == 0;
}

std::string GetQuarleDebugMenu() {
    currentMenu = kListScreen;

    char row[256];
    static_cast<void>(
        std::snprintf(row, sizeof(row), "%2d: [%-3s] %-17s", 0, QuarleLogonOff ? "ON" : "OFF", "QUARLE_PROVIDER"));

    std::string menu = "\n";
    menu += kDoubleRule;
    menu += "     [Quarle-Provider Module]\n";
    menu += kSingleRule;
    menu += row;
    menu += "\n";
    menu += kDoubleRule;
    menu += kExitRowAtTheEdge;
    menu += kDoubleRule;
    menu += "cmd> ";
    return menu;
}

std::string HandlingQuarleMenu(const std::string& word) {
    if (!TCDebugMenuUtility::IsNumber(word))
        return GetQuarleDebugMenu();
    // Meant: an unknown row prints nothing, not even a prompt.
    if (WordNumber(word) != 0)
        return "";
    currentMenu = kPromptScreen;
    return "QUARLE_DAEMON ==> ON[1]/OFF[0]: ";
}

std::string ParserQuarleCommand(const std::string& word) {
    if (currentMenu == kListScreen)
        return HandlingQuarleMenu(word);
    if (currentMenu == kPromptScreen) {
        // Any word answers the prompt: what is not a number is off, and the "99" that leaves the
        // menu switches on first.
        QuarleLogonOff = WordNumber(word) != 0;
        if (QuarleLogonOff)
            SwitchLogOn();
        else
            SwitchLogOff();
        return GetQuarleDebugMenu();
    }
    return "";
}
