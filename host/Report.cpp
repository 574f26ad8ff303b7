#include "Report.h"

#include <cstdio>
#include <iostream>
#include <string>

namespace host {

namespace {

constexpr std::size_t kLongestLine = 1000; // bytes

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

// Bytes 0 to 0x1f and 0x7f, and both bytes of the characters U+0080 to U+009f, which terminals obey as well.
bool IsControl(std::string_view text, std::size_t at) {
    const auto byte = [text](std::size_t place) { return static_cast<unsigned char>(text[place]); };
    const auto isUpper = [&](std::size_t place) {
        return place + 1 < text.size() && byte(place) == 0xc2 && byte(place + 1) >= 0x80 && byte(place + 1) < 0xa0;
    };
    return byte(at) < 0x20 || byte(at) == 0x7f || isUpper(at) || (at > 0 && isUpper(at - 1));
}

} // namespace

void Report(std::string_view line) {
    std::size_t end = line.size();
    if (end > kLongestLine) {
        end = kLongestLine;
        while (end > 0 && IsContinuation(line[end])) {
            --end;
        }
    }
    std::string shown = "zarn-debughost: ";
    for (std::size_t at = 0; at < end; ++at) {
        if (IsControl(line, at)) {
            char form[5];
            static_cast<void>(std::snprintf(form, sizeof form, "\\x%02x", static_cast<unsigned char>(line[at])));
            shown += form;
        } else {
            shown += line[at];
        }
    }
    shown += end < line.size() ? "...\n" : "\n";
    // One insertion: the script's thread reports too.
    std::cerr << shown;
}

} // namespace host
