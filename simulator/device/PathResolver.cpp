#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include <base/DeviceLog.h>
#include <norvex/device/PathResolver.h>

namespace {

constexpr char kTag[] = "norvex-device";

std::string FindVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// Where the simulated device keeps its files: NORVEX_DEVICE_DIR or, without it, a directory in the
// user's state directory.
std::string FindBaseDirectory() {
    if (std::string directory = FindVariable("NORVEX_DEVICE_DIR"); !directory.empty())
        return directory;
    if (std::string state = FindVariable("XDG_STATE_HOME"); !state.empty())
        return state + "/norvex/device";
    if (std::string home = FindVariable("HOME"); !home.empty())
        return home + "/.local/state/norvex/device";
    return "/tmp/norvex-" + std::to_string(getuid()) + "/device";
}

} // namespace

// A TV has its directories; this one creates them on demand.
std::string TCPathResolver::GetAbsolutePath(EDeviceDirectory directory, const std::string& relativePath) {
    if (directory != DEVICE_DIRECTORY_DATA) {
        devicelog::Print(kTag, "unknown directory %d, this device has only %d", static_cast<int>(directory),
                         static_cast<int>(DEVICE_DIRECTORY_DATA));
        return {};
    }
    std::string path = FindBaseDirectory() + "/" + relativePath;
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    std::error_code error;
    std::filesystem::create_directories(parent, error);
    if (error)
        devicelog::Print(kTag, "cannot create the directory %s: %s", parent.c_str(), error.message().c_str());
    return path;
}
