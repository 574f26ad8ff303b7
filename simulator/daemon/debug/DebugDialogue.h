#pragma once

#include <string>
#include <string_view>

#include "DebugSwitches.h"

namespace sim {

// One user's dialogue with the TV's debug menu: each typed word leads to a screen. The lines of the
// parts that are switched on are shown above the next screen. All dialogues share the switches.
class DebugDialogue {
public:
    explicit DebugDialogue(DebugSwitches& switches) : m_switches(switches) {}

    bool IsOpen() const { return m_open; }
    // Name of the current screen.
    const char* GetScreenName() const;

    // The first screen.
    std::string Open();
    // Answers a word with the next screen. False when the user has left.
    bool Execute(std::string_view word, std::string& screen);
    void Close() { m_open = false; }
    // A line for the next screen. Beyond some 20 lines they are only counted.
    void Add(std::string_view line);

private:
    enum class Screen { Main, Status, Items, Modes, QoS };

    std::string Show(Screen screen);
    std::string ShowMain() const;
    std::string ShowHelp() const;
    std::string ShowStatus() const;
    std::string ShowItems() const;
    std::string ShowModes() const;
    std::string ShowQoS() const;
    // The next screen, without lines. False when the user has left.
    bool FindScreen(std::string_view word, std::string& screen);
    // Words of the current screen only; false if it does not know the word either.
    bool ExecuteOnScreen(std::string_view word, std::string& screen);
    // The current screen again, with a line above it.
    std::string ShowAgain(const std::string& line);
    std::string TellChange(bool kept, const std::string& line);

    DebugSwitches& m_switches;
    bool m_open = false;
    Screen m_screen = Screen::Main;
    std::string m_lines;
    std::size_t m_lineCount = 0;
};

} // namespace sim
