#pragma once

namespace host {

// To be called first in main, before anything is opened. Afterwards descriptors 0 to 2 are open (a
// closed one reads as empty and discards what is written, so that no file opened later takes its
// number), child processes of the plug-in inherit only these three, and SIGPIPE ends the process.
void PrepareStandardDescriptors();

// Saves the terminal's modes, if there is a terminal, and restores them when a signal ends the
// process (Ctrl-C, a hang-up, a plain kill). The signal still ends the process, and its parent sees
// which one it was.
void SaveTerminalModes();

// Restores the terminal's modes if they have changed and this process is in the foreground. May be
// called more than once and from a signal handler; does nothing before SaveTerminalModes.
void RestoreTerminalModes();

// Writes what instrumented builds report at exit, for a process that ends without exit handlers:
// the coverage counters, and the leaks, which end the process here if there are any. (The thread
// sanitizer reports by itself.) Does nothing in a plain build.
void WriteProcessReports();

} // namespace host
