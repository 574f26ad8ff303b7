#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include <base/Log.h>
#include <base/LogLine.h>

namespace sim {

namespace {

constexpr std::size_t kMaxLine = 2048;

const char* const kStartedTags[] = {kOwnTag,       "tvvideosink", "tvvideodec", "tvtunerinfosrc",
                                    "tvaudiosink", "tvaudiodec",  "tvdemuxer",  "tvdrmsink",
                                    "extaudiosrc", "extvideosrc", "tvfpaparser"};
const char* const kStoppedTags[] = {"quarle-daemon", "quarle-provider"};

} // namespace

Log::Log() {
    ResetTags();
}

Log::~Log() {
    if (m_file >= 0)
        close(m_file);
}

bool Log::OpenFile(const std::string& path) {
    m_file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    return m_file >= 0;
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the compiler checks the arguments against the format.
void Log::Write(const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteLine(tag, format, arguments);
    va_end(arguments);
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the same.
std::int32_t Log::Refuse(std::int32_t result, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteLine(tag, format, arguments);
    va_end(arguments);
    return result;
}

void Log::WriteLine(const char* tag, const char* format, va_list arguments) {
    if ((m_file < 0 && !m_sink) || !IsStarted(tag))
        return;
    char line[kMaxLine];
    std::size_t used = WriteLogPrefix(line, sizeof line, tag);
    int size = std::snprintf(line + used, sizeof line - used, "#%llu ", static_cast<unsigned long long>(m_sequence));
    used += static_cast<std::size_t>(size);
    size = std::vsnprintf(line + used, sizeof line - used, format, arguments);
    if (size < 0)
        return;
    // One byte for the line end, which a truncated line needs as well.
    used = std::min(used + static_cast<std::size_t>(size), sizeof line - 1);
    MaskControlCharacters(line, used);
    if (m_sink)
        m_sink(tag, {line, used});
    if (m_file >= 0) {
        line[used] = '\n';
        // Failing to write the log is not fatal.
        while (write(m_file, line, used + 1) < 0 && errno == EINTR) {
        }
    }
}

bool Log::IsStarted(std::string_view tag) const {
    const auto found = m_tags.find(tag);
    return found != m_tags.end() && found->second;
}

void Log::SetTag(const std::string& tag, bool started) {
    m_tags[tag] = started;
}

void Log::ResetTags() {
    m_tags.clear();
    for (const char* tag : kStartedTags)
        m_tags[tag] = true;
    for (const char* tag : kStoppedTags)
        m_tags[tag] = false;
}

} // namespace sim
