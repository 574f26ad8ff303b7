#pragma once

#include <string>

#include <norvex/core/Export.h>

// Directories of the device, by the path resolver's numbers.
enum EDeviceDirectory : int { DEVICE_DIRECTORY_DATA = 6 };

class NORVEX_API TCPathResolver {
public:
    // Absolute path of `relativePath` below a directory of the device; empty for an unknown
    // directory.
    static std::string GetAbsolutePath(EDeviceDirectory directory, const std::string& relativePath);
};
