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
    struct stat there {};
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        error = path + ": " + std::generic_category().message(errno);
        return false;
    }
    // Under /tmp another user may have created it first.
    if (lstat(path.c_str(), &there) != 0 || !S_ISDIR(there.st_mode) || there.st_uid != geteuid() ||
        (there.st_mode & 0077) != 0) {
        error = path + ": not a directory of this user only";
        return false;
    }
    return true;
}

} // namespace sim
