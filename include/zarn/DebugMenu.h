#pragma once

// Runs the debug console on the calling thread: menus on standard output, words from standard
// input. Returns when the user leaves with "99". May be called again; never on two threads at once.
// The only symbol that the library exports.
extern "C" __attribute__((visibility("default"))) void zarn_startmaindebug(void);
