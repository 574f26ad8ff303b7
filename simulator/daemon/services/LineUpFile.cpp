#include "LineUpFile.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sim {

namespace {

// Several million services.
constexpr off_t kMaxSize = off_t{512} << 20;

// Reading from anything but a regular file could block, or never end.
std::string ReadAll(int file, std::string& text) {
    struct stat about {};
    if (fstat(file, &about) != 0)
        return std::generic_category().message(errno);
    if (!S_ISREG(about.st_mode))
        return "expected a regular file";
    if (about.st_size > kMaxSize)
        return "expected at most 512 MiB";
    text.resize(static_cast<std::size_t>(about.st_size));
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t got = read(file, text.data() + size, text.size() - size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::generic_category().message(errno);
        if (got == 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    text.resize(size);
    return {};
}

} // namespace

bool ReadLineUpFile(const std::string& path, const std::string& name, std::string& text, std::string& error) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    const std::string why = file < 0 ? std::generic_category().message(errno) : ReadAll(file, text);
    if (file >= 0)
        close(file);
    if (why.empty())
        return true;
    error = name + ": " + why;
    return false;
}

} // namespace sim
