#pragma once

#include <string>
#include <string_view>

namespace devicelog {

// A file that lines are appended to, by several processes at a time. When it reaches its limit it
// is renamed to PATH.1, replacing an older one, and a new file is started. One thread at a time.
class LogFile {
public:
    // Does not open the file. `limit` in bytes.
    LogFile(std::string path, long limit);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // One write; false when the line could not be written.
    bool Append(std::string_view line);

    // The log's path according to the environment; empty when there is none. Creates the default
    // directory, for this user only.
    static std::string FindPath();

private:
    bool Open();
    void Rotate();

    std::string m_path;
    long m_limit;
    int m_file = -1;
};

} // namespace devicelog
