#pragma once

#include <norvex/core/Export.h>

// Reads a number from the device's key-value store into `value`. 0 on success; below 0, and `value`
// unchanged, when the key is missing or not a number, or the store cannot be reached.
extern "C" NORVEX_API int vconf_get_int(const char* key, int* value);
