#pragma once

#include <cstdlib>
#include <string>

// The number that a typed word begins with, 0 when there is none. Only its low 32 bits count:
// "4294967297" is 1.
inline int WordNumber(const std::string& word) {
    return static_cast<int>(std::strtol(word.c_str(), nullptr, 10));
}
