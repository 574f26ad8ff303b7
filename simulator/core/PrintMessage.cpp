#include <cstdarg>
#include <cstdio>

#include <base/DeviceLog.h>
#include <norvex/core/PrintMessage.h>

// NOLINTNEXTLINE(cert-dcl50-cpp): the device's declaration.
void TCApiPrintMessage(const char* format, ...) {
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length >= 0)
        devicelog::Write("norvex-api", text);
}
