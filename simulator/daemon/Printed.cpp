#include "Printed.h"

#include <cstdarg>
#include <memory>

#include <glib.h>

namespace sim {

// NOLINTNEXTLINE(cert-dcl50-cpp): the compiler checks the arguments against the format.
std::string Printed(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::unique_ptr<char, decltype(&g_free)> text(g_strdup_vprintf(format, arguments),
                                                        &g_free);
    va_end(arguments);
    return text.get();
}

} // namespace sim
