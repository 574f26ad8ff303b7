#pragma once

#include <string>
#include <string_view>

namespace devicelog {

// A file that lines are appended to, by several processes at a time. When it has reached its limit
// it becomes PATH.1, in place of the one that was there, and begins anew. One thread at a time.
class LogFile {
public:
    // Opens nothing yet. `limit` in bytes.
    LogFile(std::string path, long limit);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // One write; false when the line could not be written.
    bool Append(std::string_view line);

    // Where the log is by the environment; empty when there is no place for one. Makes the default
    // directory, for its user alone.
    static std::string FindPath();

private:
    bool Open();
    void Rotate();

    std::string m_path;
    long m_limit;
    int m_file = -1;
};

} // namespace devicelog
