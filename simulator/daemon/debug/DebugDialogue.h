#pragma once

#include <string>
#include <string_view>

#include "DebugSwitches.h"

namespace sim {

// One user's dialogue with the service's own debug menu: screens that are reached by typed words,
// one word at a time. The switches are shared by all dialogues.
class DebugDialogue {
public:
    explicit DebugDialogue(DebugSwitches& switches) : m_switches(switches) {}

    bool IsOpen() const { return m_open; }
    // Name of the screen that is shown.
    const char* GetScreenName() const;

    // The first screen.
    std::string Open();
    // Answers a word with the next screen. False when the user has left.
    bool Execute(std::string_view word, std::string& screen);
    void Close() { m_open = false; }

private:
    enum class Screen { Main, Status, Items, Modes, QoS };

    std::string Show(Screen screen);
    std::string ShowMain() const;
    std::string ShowHelp() const;
    std::string ShowStatus() const;
    std::string ShowItems() const;
    std::string ShowModes() const;
    std::string ShowQoS() const;
    // The words that only one screen knows; false when it doesn't either.
    bool ExecuteOnScreen(std::string_view word, std::string& screen);
    // The present screen again, with a line above it.
    std::string ShowAgain(const std::string& line);
    std::string TellChange(bool kept, const std::string& line);

    DebugSwitches& m_switches;
    bool m_open = false;
    Screen m_screen = Screen::Main;
};

} // namespace sim
