#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <string>

#include <unistd.h>

#include <base/DeviceLog.h>
#include <base/LogFile.h>
#include <base/LogLine.h>

namespace devicelog {

namespace {

constexpr std::size_t kMaxPrefixSize = 256;
constexpr std::size_t kMaxTextSize = 4000;
constexpr long kMaxFileSize = 4L << 20;

// Never destroyed: destructors of static objects write lines, too.
struct Log {
    std::mutex mutex;
    LogFile file{LogFile::FindPath(), kMaxFileSize};
};

Log& GetLog() {
    static auto* log = new Log;
    return *log;
}

} // namespace

void Write(std::string_view tag, std::string_view text) {
    const int error = errno;
    char prefix[kMaxPrefixSize];
    std::string line(prefix, sim::WriteLogPrefix(prefix, sizeof prefix, std::string(tag).c_str()));
    line.append(text.substr(0, kMaxTextSize));
    sim::MaskUnprintable(line.data(), line.size());
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
