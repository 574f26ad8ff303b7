#pragma once

#include <norvex/core/Export.h>

// Reads a number from the device's key-value store into `value`. 0 on success; below 0, and `value`
// left as it was, for a key that is not there or not a number, and while the store cannot be
// reached.
extern "C" NORVEX_API int vconf_get_int(const char* key, int* value);
