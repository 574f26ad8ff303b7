#pragma once

#include <norvex/core/Export.h>

// Logs a condition that does not hold in the device's log and returns. `message` may be null. Any
// thread.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the device's name.
NORVEX_API void _TCApiAssert(const char* expression, const char* file, int line, const char* message);
