#include "DebugDialogue.h"

#include <algorithm>

#include <base/Number.h>
#include <base/Printed.h>

namespace sim {

namespace {

const char kRule[] = "====================================\n";
const char kThinRule[] = "------------------------------------\n";
const char kPrompt[] = "norvex> ";
constexpr std::size_t kMaxLines = 20; // above a screen

std::string Frame(const char* title, const std::string& rows) {
    std::string screen = "\n";
    screen.append(kRule).append("\t[").append(title).append("]\n");
    screen.append(kThinRule).append(rows).append(kThinRule);
    screen.append(" 99 : Exit\n").append(kRule).append(kPrompt);
    return screen;
}

const char* OnOff(bool on) {
    return on ? "ON" : "OFF";
}

// A typed word for display on a screen.
std::string Quote(std::string_view word) {
    constexpr std::size_t kMaxShown = 40;
    std::string text(word.substr(0, kMaxShown));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= 0 && (c < ' ' || c == 0x7F); }, '?');
    return "\"" + text + (word.size() > kMaxShown ? "...\"" : "\"");
}

} // namespace

const char* DebugDialogue::GetScreenName() const {
    switch (m_screen) {
    case Screen::Main:
        return "main";
    case Screen::Status:
        return "status";
    case Screen::Items:
        return "items";
    case Screen::Modes:
        return "modes";
    case Screen::QoS:
        return "qos";
    }
    return "";
}

std::string DebugDialogue::Open() {
    m_open = true;
    m_lines.clear();
    m_lineCount = 0;
    return Show(Screen::Main);
}

void DebugDialogue::Add(std::string_view line) {
    if (m_open && ++m_lineCount <= kMaxLines)
        m_lines.append(line).append("\n");
}

bool DebugDialogue::Execute(std::string_view word, std::string& screen) {
    const bool goesOn = FindScreen(word, screen);
    if (m_lineCount > kMaxLines)
        m_lines += "... and " + std::to_string(m_lineCount - kMaxLines) + " more lines\n";
    if (m_lineCount > 0)
        screen = "\n" + m_lines + screen;
    m_lines.clear();
    m_lineCount = 0;
    return goesOn;
}

bool DebugDialogue::FindScreen(std::string_view word, std::string& screen) {
    if (word == "99") {
        m_open = false;
        screen = "\nNorvex debug menu left\n";
        return false;
    }
    if (word == "help")
        screen = ShowHelp();
    else if (word == "main")
        screen = Show(Screen::Main);
    else if (word == "status")
        screen = Show(Screen::Status);
    else if (word == "items")
        screen = Show(Screen::Items);
    else if (word == "modes")
        screen = Show(Screen::Modes);
    else if (word == "qos")
        screen = Show(Screen::QoS);
    else if (!ExecuteOnScreen(word, screen))
        screen = ShowAgain("Unknown word " + Quote(word) + ", try help");
    return true;
}

bool DebugDialogue::ExecuteOnScreen(std::string_view word, std::string& screen) {
    std::uint32_t number = 0;
    const bool isNumber = ParseNumber(word, number);
    if (m_screen == Screen::Items && (word == "all" || word == "none")) {
        screen =
            TellChange(m_switches.SetAllItems(word == "all"), word == "all" ? "All items are ON" : "All items are OFF");
        return true;
    }
    if (m_screen == Screen::Items && isNumber) {
        DebugSwitches::Item* item = m_switches.FindItem(number);
        if (item == nullptr) {
            screen = ShowAgain("There is no item " + std::to_string(number));
            return true;
        }
        const bool kept = m_switches.SetItem(*item, !item->on);
        screen = TellChange(kept, item->name + " is " + OnOff(item->on));
        return true;
    }
    if (m_screen == Screen::Modes && isNumber) {
        DebugSwitches::Mode* mode = m_switches.FindMode(static_cast<std::int32_t>(number));
        if (mode == nullptr) {
            screen = ShowAgain("There is no mode " + std::to_string(number));
            return true;
        }
        const bool kept = m_switches.SetMode(*mode, !mode->on);
        screen = TellChange(kept, std::string(mode->name) + " is " + OnOff(mode->on));
        return true;
    }
    if (m_screen == Screen::QoS && (word == "on" || word == "off")) {
        const bool kept = m_switches.SetQoS(word == "on");
        screen = TellChange(kept, std::string("QoS is ") + OnOff(m_switches.IsQoSOn()));
        return true;
    }
    return false;
}

std::string DebugDialogue::TellChange(bool kept, const std::string& line) {
    return ShowAgain(kept ? line : "The database did not take the change");
}

std::string DebugDialogue::ShowAgain(const std::string& line) {
    return "\n" + line + "\n" + Show(m_screen);
}

std::string DebugDialogue::Show(Screen screen) {
    m_screen = screen;
    switch (screen) {
    case Screen::Main:
        return ShowMain();
    case Screen::Status:
        return ShowStatus();
    case Screen::Items:
        return ShowItems();
    case Screen::Modes:
        return ShowModes();
    case Screen::QoS:
        return ShowQoS();
    }
    return {};
}

std::string DebugDialogue::ShowMain() const {
    return Frame("Norvex", " help   : the words of each screen\n"
                           " status : what is switched on\n"
                           " items  : debug menu items\n"
                           " modes  : debug modes\n"
                           " qos    : QoS switch\n");
}

std::string DebugDialogue::ShowHelp() const {
    return Frame("Norvex help", " main, status, items, modes, qos :\n"
                                "   show that screen, from anywhere\n"
                                " on items : NUMBER flips an item,\n"
                                "   all, none switch every item\n"
                                " on modes : NUMBER flips a mode\n"
                                " on qos   : on, off\n");
}

std::string DebugDialogue::ShowStatus() const {
    std::string rows = " items on : " + std::to_string(m_switches.CountOn()) + " of " +
                       std::to_string(m_switches.GetItems().size()) + "\n modes on :";
    bool any = false;
    for (const DebugSwitches::Mode& mode : m_switches.GetModes()) {
        if (mode.on)
            rows += std::string(" ") + mode.name;
        any = any || mode.on;
    }
    rows += any ? "\n" : " none\n";
    rows += std::string(" QoS      : ") + OnOff(m_switches.IsQoSOn()) + "\n";
    return Frame("Norvex status", rows);
}

std::string DebugDialogue::ShowItems() const {
    // A screen, not a listing: items that do not fit can still be switched by number.
    constexpr std::size_t kMaxRows = 64;
    std::string rows;
    const auto& items = m_switches.GetItems();
    for (std::size_t row = 0; row < items.size() && row < kMaxRows; ++row) {
        rows += Printed(" %3u: [%-3s] %s\n", items[row].id, OnOff(items[row].on), items[row].name.c_str());
    }
    if (items.size() > kMaxRows)
        rows += " ... up to " + std::to_string(items.back().id) + "\n";
    return Frame("Norvex items", rows);
}

std::string DebugDialogue::ShowModes() const {
    std::string rows;
    for (const DebugSwitches::Mode& mode : m_switches.GetModes()) {
        rows += Printed(" %3d: [%-3s] %s\n", mode.number, OnOff(mode.on), mode.name);
    }
    return Frame("Norvex modes", rows);
}

std::string DebugDialogue::ShowQoS() const {
    return Frame("Norvex QoS", std::string(" QoS is ") + OnOff(m_switches.IsQoSOn()) + "\n on, off : switch it\n");
}

} // namespace sim
