#include <base/DeviceLog.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <unistd.h>

#include <base/LogFile.h>

namespace devicelog {

namespace {

constexpr std::size_t kMaxTextSize = 4000;
constexpr long kMaxFileSize = 4L << 20;

// Never destroyed: lines come from destructors of static objects, too.
struct Log {
    std::mutex mutex;
    LogFile file{LogFile::FindPath(), kMaxFileSize};
};

Log& GetLog() {
    static auto* log = new Log;
    return *log;
}

std::string MakePrefix(std::string_view tag) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[64];
    std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    length +=
        static_cast<std::size_t>(std::snprintf(text + length, sizeof text - length, ".%03ld %ld ",
                                               now.tv_nsec / 1000000, static_cast<long>(getpid())));
    return std::string(text, length).append(tag).append(": ");
}

} // namespace

void Write(std::string_view tag, std::string_view text) {
    const int error = errno;
    std::string line = MakePrefix(tag);
    line.append(text.substr(0, kMaxTextSize));
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < ' ' || character == '\x7f')
            character = ' ';
    }
    line += '\n';
    {
        Log& log = GetLog();
        const std::lock_guard lock(log.mutex);
        log.file.Append(line);
    }
    errno = error;
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the compiler checks the arguments against the format.
void Print(const char* tag, const char* format, ...) {
    char text[kMaxTextSize + 1];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length >= 0)
        Write(tag, text);
}

} // namespace devicelog
