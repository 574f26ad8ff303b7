#pragma once

#include <string>
#include <string_view>

#include <base/LogWriter.h>

namespace devicelog {

// A file that lines are appended to, by several processes at a time. When it reaches its limit it
// is renamed to PATH.1, replacing an older one, and a new file is started. One thread at a time.
class LogFile {
public:
    // Does not open the file. `limit` in bytes.
    LogFile(std::string path, long limit);

    // False: the line is lost.
    bool Append(std::string_view line);

    // The log's path according to the environment; empty when there is none. Creates the default
    // directory, for this user only.
    static std::string FindPath();

private:
    void Rotate();

    std::string m_path;
    long m_limit;
    sim::LogWriter m_writer{"norvex-log", ""};
};

} // namespace devicelog
