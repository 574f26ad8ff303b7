#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include <base/Log.h>
#include <base/LogLine.h>

namespace sim {

namespace {

constexpr std::size_t kMaxLine = 2048;

const char* const kStartedTags[] = {kOwnTag,       "tvvideosink", "tvvideodec", "tvtunerinfosrc",
                                    "tvaudiosink", "tvaudiodec",  "tvdemuxer",  "tvdrmsink",
                                    "extaudiosrc", "extvideosrc", "tvfpaparser"};

} // namespace

Log::Log() {
    ResetTags();
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

// NOLINTNEXTLINE(cert-dcl50-cpp): the same.
void Log::WriteDebug(Debug part, const char* format, ...) {
    if (!IsOn(part))
        return;
    const DebugPart& described = kDebugParts.at(static_cast<std::size_t>(part));
    char line[kMaxLine];
    const int name = std::snprintf(line, sizeof line, "%s: ", described.name);
    va_list arguments;
    va_start(arguments, format);
    const int text = std::vsnprintf(line + name, sizeof line - static_cast<std::size_t>(name), format, arguments);
    va_end(arguments);
    if (text < 0)
        return;
    const std::size_t size = std::min(static_cast<std::size_t>(name) + static_cast<std::size_t>(text), sizeof line - 1);
    MaskUnprintable(line, size);
    Write(described.tag, "%s", line);
    if (m_debugSink)
        m_debugSink({line, size});
}

void Log::WriteLine(const char* tag, const char* format, va_list arguments) {
    if ((!m_writer.IsOpen() && !m_sink) || !IsStarted(tag))
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
    MaskUnprintable(line, used);
    if (m_sink)
        m_sink(tag, {line, used});
    if (m_writer.IsOpen()) {
        line[used] = '\n';
        m_writer.Write({line, used + 1});
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
    for (const char* tag : kProviderTags)
        m_tags[tag] = false;
}

} // namespace sim
