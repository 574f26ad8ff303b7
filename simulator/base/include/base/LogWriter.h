#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sim {

// Appends lines to a log's file, terminal or pipe. It never waits: a line that cannot be written now
// is lost, and the log says how many were as soon as it can be written again. One thread at a time.
class LogWriter {
public:
    // Tag and beginning of the text of the line that says so.
    LogWriter(const char* tag, const char* beginning) : m_tag(tag), m_beginning(beginning) {}
    ~LogWriter() { Close(); }
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    // Created for this user only; a pipe that nobody reads yet can be opened as well. False when it
    // cannot be opened, with the reason in errno.
    bool Open(const std::string& path);
    void Close();
    bool IsOpen() const { return m_file >= 0; }
    int GetDescriptor() const { return m_file; }

    // `line` has its line end, and is written by one write, so that lines of several processes are
    // not interleaved. False: it is lost.
    bool Write(std::string_view line);
    // The lines lost so far.
    std::uint64_t GetLostCount() const { return m_lostCount; }

private:
    bool TryWrite(std::string_view line);

    const char* m_tag;
    const char* m_beginning;
    int m_file = -1;
    bool m_isLineOpen = false; // the last line was written in part
    std::uint64_t m_lostCount = 0;
    std::uint64_t m_reportedCount = 0;
};

} // namespace sim
