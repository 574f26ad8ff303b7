#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include <base/Debug.h>
#include <base/LogWriter.h>

namespace sim {

// The daemon's own tag; never stopped.
constexpr const char* kOwnTag = "norvex";
// The tag of tuning, line-up and scans.
constexpr const char* kTunerTag = "tvtunerinfosrc";

// The tags of the live provider, one switch of the console.
constexpr const char* kProviderTags[] = {"quarle-daemon", "quarle-provider"};

// The TV's log: lines with a tag, written to a file and sent to the tag's followers. A stopped tag
// writes nothing.
class Log {
public:
    using Sink = std::function<void(std::string_view tag, std::string_view line)>;

    Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    // Appends to the file or pipe, without ever waiting. False when it cannot be opened, with the
    // reason in errno.
    bool OpenFile(const std::string& path) { return m_writer.Open(path); }
    // Lines that could not be written so far.
    std::uint64_t GetLostCount() const { return m_writer.GetLostCount(); }
    // Gets each line, without a line end.
    void SetSink(Sink sink) { m_sink = std::move(sink); }

    // Each line has the number of the call or event that caused it.
    void SetSequence(std::uint64_t sequence) { m_sequence = sequence; }

    __attribute__((format(printf, 3, 4))) void Write(const char* tag, const char* format, ...);
    // Writes why an operation is refused; returns `result`.
    __attribute__((format(printf, 4, 5))) std::int32_t Refuse(std::int32_t result, const char* tag, const char* format,
                                                              ...);

    // What the debug menu has switched on.
    void SetDebug(const DebugState& debug) { m_debug = debug; }
    const DebugState& GetDebug() const { return m_debug; }
    bool IsOn(Debug part) const { return m_debug.IsOn(part); }
    // Gets each line of WriteDebug, whether or not its tag is started.
    void SetDebugSink(std::function<void(std::string_view line)> sink) { m_debugSink = std::move(sink); }
    // Writes a line of a part that is on, with the part's name and under its tag.
    __attribute__((format(printf, 3, 4))) void WriteDebug(Debug part, const char* format, ...);

    // Initially the media elements' tags are started, those of the live provider are stopped.
    bool IsStarted(std::string_view tag) const;
    const std::map<std::string, bool, std::less<>>& GetTags() const { return m_tags; }
    void SetTag(const std::string& tag, bool started);
    void ResetTags();

    // Current number of followers of any tag; set by the server.
    void SetFollowerCount(std::size_t count) { m_followerCount = count; }
    std::size_t GetFollowerCount() const { return m_followerCount; }

private:
    void WriteLine(const char* tag, const char* format, va_list arguments);

    LogWriter m_writer{kOwnTag, "#0 "};
    Sink m_sink;
    DebugState m_debug;
    std::function<void(std::string_view line)> m_debugSink;
    std::uint64_t m_sequence = 0;
    std::size_t m_followerCount = 0;
    std::map<std::string, bool, std::less<>> m_tags;
};

} // namespace sim
