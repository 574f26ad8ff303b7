#pragma once

#include <string>

#include <norvex/core/Export.h>

// What every debug-menu library needs. Runs on the caller's thread.
class NORVEX_API TCDebugMenuUtility {
public:
    // True for a non-empty run of ASCII digits; no sign, no blank.
    static bool IsNumber(const std::string& text);
    // Opens the library at `path`, calls its function `entry` (no arguments, no result), and closes
    // the library when the function returns. False, and a line in the log, when the library or the
    // function is missing.
    static bool OpenLibrary(const char* path, const char* entry);
};
