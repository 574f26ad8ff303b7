#pragma once

#include <charconv>
#include <string_view>

namespace sim {

// A whole text as a decimal number, or as "0x…" in hexadecimal digits. False, with `value`
// unchanged, for anything else and for what T cannot hold.
template <class T> bool ParseNumber(std::string_view word, T& value) {
    int base = 10;
    if (word.starts_with("0x") || word.starts_with("0X")) {
        word.remove_prefix(2);
        base = 16;
    }
    T parsed{};
    const char* end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, parsed, base);
    if (result.ec != std::errc() || result.ptr != end || (base == 16 && word.starts_with('-')))
        return false;
    value = parsed;
    return true;
}

} // namespace sim
