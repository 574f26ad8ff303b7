#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include <base/Path.h>

namespace sim {

namespace {

std::string GetOwnDirectory() {
    return "/tmp/norvex-" + std::to_string(geteuid());
}

// Null when it is unset or empty.
const char* FindVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

// Under /tmp another user may have created it first. True when it is missing.
bool IsTrusted(const std::string& directory, std::string& error) {
    struct stat there {};
    if (lstat(directory.c_str(), &there) != 0 ||
        (S_ISDIR(there.st_mode) && there.st_uid == geteuid() && (there.st_mode & 0077) == 0))
        return true;
    error = directory + ": not a directory of this user only";
    return false;
}

// Of the default socket.
std::string GetSocketDirectory() {
    const char* runtime = FindVariable("XDG_RUNTIME_DIR");
    return runtime != nullptr ? runtime : GetOwnDirectory();
}

} // namespace

std::string GetDefaultSocketPath() {
    return GetSocketDirectory() + "/norvex.sock";
}

std::string FindSocketPath() {
    const char* named = FindVariable("NORVEX_SOCKET");
    return named != nullptr ? named : GetDefaultSocketPath();
}

bool MakeDefaultDirectory(std::string& error) {
    const std::string path = GetSocketDirectory();
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        error = path + ": " + std::generic_category().message(errno);
        return false;
    }
    return IsTrusted(path, error);
}

bool MakeDirectories(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), 0700);
    return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST;
}

std::string FindStateDirectory() {
    if (const char* state = FindVariable("XDG_STATE_HOME"); state != nullptr && *state == '/')
        return state;
    if (const char* home = FindVariable("HOME"); home != nullptr && *home == '/')
        return std::string(home) + "/.local/state";
    return {};
}

std::string FindDeviceDirectory(std::string& error) {
    if (const char* directory = FindVariable("NORVEX_DEVICE_DIR")) {
        if (*directory == '/')
            return directory;
        error = std::string("NORVEX_DEVICE_DIR: expected an absolute path, not ") + directory;
        return {};
    }
    if (const std::string state = FindStateDirectory(); !state.empty())
        return state + "/norvex/device";
    const std::string own = GetOwnDirectory();
    return IsTrusted(own, error) ? own + "/device" : "";
}

} // namespace sim
