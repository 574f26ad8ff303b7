#include <cstdarg>
#include <cstdio>

#include <base/Printed.h>

namespace sim {

// NOLINTNEXTLINE(cert-dcl50-cpp): the compiler checks the arguments against the format.
std::string Printed(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

} // namespace sim
