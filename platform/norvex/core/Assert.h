#pragma once

#include <norvex/core/Export.h>

// Reports a condition that does not hold, in the device's log; the caller goes on. `message` may be
// null. Any thread.
NORVEX_API void _TCApiAssert(const char* expression, const char* file, int line,
                             const char* message);
