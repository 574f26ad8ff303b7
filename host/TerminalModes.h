#pragma once

namespace host {

// Remembers how the terminal is set, if there is one, and puts it back when the process is ended by
// a signal (Ctrl-C, a hang-up, a plain kill). Such a signal still ends the process, and its parent
// sees which one it was.
void KeepTerminalModes();

// Puts the terminal back if it was changed since, and this process is the one in its foreground.
// May be called more than once and from a signal handler; does nothing before KeepTerminalModes.
void RestoreTerminalModes();

} // namespace host
