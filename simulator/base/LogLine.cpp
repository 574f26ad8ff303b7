#include <algorithm>
#include <cstdio>
#include <ctime>

#include <unistd.h>

#include <base/LogLine.h>

namespace sim {

std::size_t WriteLogPrefix(char* line, std::size_t size, const char* tag) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    const std::size_t used = std::strftime(line, size, "%Y-%m-%dT%H:%M:%S", &local);
    const int rest = std::snprintf(line + used, size - used, ".%03ld %ld %s: ", now.tv_nsec / 1000000,
                                   static_cast<long>(getpid()), tag);
    return std::min(used + static_cast<std::size_t>(rest), size - 1);
}

void MaskControlCharacters(char* text, std::size_t size) {
    std::replace_if(
        text, text + size,
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7f'; }, '?');
}

} // namespace sim
