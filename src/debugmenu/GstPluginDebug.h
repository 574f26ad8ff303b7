#pragma once

#include <string>

// The menu that starts the device's log viewer for one of the TV's media elements. Console's
// thread.

// Process ID of the last viewer; -1 when it could not be started, 0 before the first.
extern int m_child_Pid;

// Runs the menu until the user types 99; always 0.
int GstPluginDebugFunction();
// Text of the menu.
std::string CreateGstDebugUtilMenu();
// True for a non-empty run of digits, as the global locale has them; no sign, no blank.
bool isNumberGst(const std::string& text);
// Announces a viewer for the element and starts it as a process that is never waited for. Returns
// its process ID, or -1 when it could not be started. `index` is the row's number; not used.
int ExecuteLogOn(const std::string& element, int index);
