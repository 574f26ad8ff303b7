#include <base/DeviceLog.h>
#include <norvex/core/Assert.h>

void _TCApiAssert(const char* expression, const char* file, int line, const char* message) {
    const auto text = [](const char* given) { return given != nullptr ? given : ""; };
    devicelog::Print("norvex-api", "assertion \"%s\" failed, %s:%d %s", text(expression), text(file), line,
                     text(message));
}
