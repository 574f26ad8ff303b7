#include <base/Path.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace sim {

namespace {

std::string GetOwnDirectory() {
    return "/tmp/norvex-" + std::to_string(geteuid());
}

const char* GetRuntimeDirectory() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* directory = std::getenv("XDG_RUNTIME_DIR");
    return directory != nullptr && *directory != '\0' ? directory : nullptr;
}

} // namespace

std::string GetDefaultSocketPath() {
    const char* runtime = GetRuntimeDirectory();
    return (runtime != nullptr ? runtime : GetOwnDirectory()) + std::string("/norvex.sock");
}

bool MakeDefaultDirectory(std::string& error) {
    const char* runtime = GetRuntimeDirectory();
    const std::string path = runtime != nullptr ? runtime : GetOwnDirectory();
    struct stat there {};
    if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        error = path + ": " + std::generic_category().message(errno);
        return false;
    }
    // Under /tmp anyone may have been there first.
    if (lstat(path.c_str(), &there) != 0 || !S_ISDIR(there.st_mode) || there.st_uid != geteuid() ||
        (there.st_mode & 0077) != 0) {
        error = path + ": is no directory of this user alone";
        return false;
    }
    return true;
}

} // namespace sim
