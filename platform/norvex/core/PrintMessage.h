#pragma once

#include <norvex/core/Export.h>

// Writes one line, formatted like printf, to the device's log; never to the console. Any thread.
NORVEX_API void TCApiPrintMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));
