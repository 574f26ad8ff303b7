// A C++ library that does nothing, for comparison with one that does.

#include <string>

extern "C" __attribute__((visibility("default"))) int zarn_empty(const char* text);

int zarn_empty(const char* text) {
    return std::string(text).empty() ? 1 : 0;
}
