#pragma once

#include <string>

// The menu that switches the live provider's log on and off. These functions build the screens and
// act on the switch; the dialogue loop of DebugMenu reads the words and prints the screens. All on
// the console's thread; failures of the device are not reported.

// The screen that the next word belongs to: 0 the list, 1 the ON/OFF prompt.
extern int currentMenu;
// The switch as last known: true for on.
extern bool QuarleLogonOff;

// Reads the switch's state from the device: on when the marker file exists.
void CheckQuarleLogOnOff();
// The list screen, prompt included; the next word belongs to it.
std::string GetQuarleDebugMenu();
// Handles a word typed on the list screen; returns the next screen.
std::string HandlingQuarleMenu(const std::string& word);
// Handles a word typed on either screen; returns the next screen.
std::string ParserQuarleCommand(const std::string& word);
