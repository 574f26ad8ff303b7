#pragma once

#include <norvex/core/Export.h>

// Writes one line, formatted as by printf, to the device's log. Never to the console. Any thread.
NORVEX_API void TCApiPrintMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));
