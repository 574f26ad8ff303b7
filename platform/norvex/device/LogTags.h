#pragma once

#include <norvex/core/Export.h>

// Starts and stops a tag of the device's log: a stopped tag writes nothing. The state outlives the
// calling process. 0 on success.
extern "C" NORVEX_API int startdlogtagbydefault(const char* tag);
extern "C" NORVEX_API int stopdlogtagbydefault(const char* tag);
