#pragma once

#include <string>

// The menu that switches the live provider's log on and off. These functions build the screens and
// act on the switch; the words come from the dialogue loop of DebugMenu, which also prints the
// screens. All on the console's thread; what fails on the device is not reported.

// Screen that the next word belongs to: 0 the list, 1 the ON/OFF prompt.
extern int currentMenu;
// The switch as last known: true for on.
extern bool QuarleLogonOff;

// Takes the switch's state from the device: on exactly when the marker file is there.
void CheckQuarleLogOnOff();
// The list screen, prompt included; the next word belongs to it.
std::string GetQuarleDebugMenu();
// Obeys a word typed on the list screen; returns the next screen.
std::string HandlingQuarleMenu(const std::string& word);
// Obeys a word typed on either screen; returns the next screen.
std::string ParserQuarleCommand(const std::string& word);
