#include "FakeFiles.h"

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>

#include "Timeline.h"

// The linker leads the calls here (--wrap) and the "real" names to the system's functions.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names.
// Visible: the core library makes some of these calls as well.
#pragma GCC visibility push(default)
extern "C" {
int __real_stat(const char* path, struct stat* status);
std::FILE* __real_fopen(const char* path, const char* mode);
int __real_fclose(std::FILE* file);
int __real_remove(const char* path);
int __wrap_stat(const char* path, struct stat* status);
std::FILE* __wrap_fopen(const char* path, const char* mode);
int __wrap_fclose(std::FILE* file);
int __wrap_remove(const char* path);
}
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

std::string watched;
bool readOnly = false;
std::FILE* opened = nullptr;

bool IsWatched(const std::string& path) {
    return !watched.empty() && path.starts_with(watched + "/");
}

std::string Shortened(const std::string& path) {
    return path.substr(watched.size() + 1);
}

} // namespace

void FakeFiles::Watch(const std::string& directory) {
    watched = directory;
    readOnly = false;
    opened = nullptr;
}

void FakeFiles::MountReadOnly() {
    readOnly = true;
}

int __wrap_stat(const char* path, struct stat* status) {
    if (IsWatched(path))
        Timeline::Now().Call("stat(" + Shortened(path) + ")");
    return __real_stat(path, status);
}

std::FILE* __wrap_fopen(const char* path, const char* mode) {
    if (!IsWatched(path))
        return __real_fopen(path, mode);
    Timeline::Now().Call("fopen(" + Shortened(path) + ", " + mode + ")");
    if (readOnly && *mode != 'r') {
        errno = EROFS;
        return nullptr;
    }
    opened = __real_fopen(path, mode);
    return opened;
}

int __wrap_fclose(std::FILE* file) {
    if (file != nullptr && file == opened) {
        Timeline::Now().Call("fclose");
        opened = nullptr;
    }
    return __real_fclose(file);
}

int __wrap_remove(const char* path) {
    if (!IsWatched(path))
        return __real_remove(path);
    Timeline::Now().Call("remove(" + Shortened(path) + ")");
    if (readOnly) {
        errno = EROFS;
        return -1;
    }
    return __real_remove(path);
}
