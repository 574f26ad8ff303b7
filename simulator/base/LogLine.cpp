#include <algorithm>
#include <cstdint>
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

namespace {

// The size of the character that begins here; 0 for a control character and for what is not UTF-8.
std::size_t GetCharacterSize(const unsigned char* bytes, std::size_t left) {
    const unsigned char first = bytes[0];
    if (first < 0x80)
        return first >= ' ' && first != 0x7f ? 1 : 0;
    const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc0 || first > 0xf4 || size > left)
        return 0;
    std::uint32_t code = first & (0x7fu >> size);
    for (std::size_t place = 1; place < size; ++place) {
        if ((bytes[place] & 0xc0) != 0x80)
            return 0;
        code = code << 6 | (bytes[place] & 0x3fu);
    }
    // The first character of each size, without U+0080 to U+009F: they are control characters.
    constexpr std::uint32_t kFirst[] = {0, 0, 0xa0, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    return code >= kFirst[size] && code <= 0x10ffff && !isSurrogate ? size : 0;
}

} // namespace

void MaskUnprintable(char* text, std::size_t size) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    for (std::size_t place = 0; place < size;) {
        const std::size_t character = GetCharacterSize(bytes + place, size - place);
        if (character == 0)
            text[place] = '?';
        place += std::max<std::size_t>(character, 1);
    }
}

} // namespace sim
