#include <base/DeviceLog.h>
#include <base/Path.h>
#include <norvex/device/PathResolver.h>

namespace {

constexpr char kTag[] = "norvex-device";

} // namespace

// Looking creates no directories: a TV has its own.
std::string TCPathResolver::GetAbsolutePath(EDeviceDirectory directory, const std::string& relativePath) {
    if (directory != DEVICE_DIRECTORY_DATA) {
        devicelog::Print(kTag, "unknown directory %d, this device has only %d", static_cast<int>(directory),
                         static_cast<int>(DEVICE_DIRECTORY_DATA));
        return {};
    }
    std::string error;
    const std::string base = sim::FindDeviceDirectory(error);
    if (base.empty()) {
        devicelog::Write(kTag, error);
        return {};
    }
    return base + "/" + relativePath;
}
