#include "LogWatch.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

namespace {

// Names the file before anything is written.
struct LogOfProcess {
    LogOfProcess() : path("/tmp/norvex-test-" + std::to_string(getpid()) + ".log") {
        setenv("NORVEX_LOG", path.c_str(), 1);
    }
    ~LogOfProcess() { unlink(path.c_str()); }

    std::string path;
};

const LogOfProcess logOfProcess;

} // namespace

const std::string& LogWatch::GetPath() {
    return logOfProcess.path;
}

LogWatch::LogWatch() {
    std::ifstream file(GetPath(), std::ios::ate);
    m_begin = file ? static_cast<long>(file.tellg()) : 0;
}

std::vector<std::string> LogWatch::GetLines() const {
    std::ifstream file(GetPath());
    file.seekg(m_begin);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

int LogWatch::Count(const std::string& text) const {
    const std::vector<std::string> lines = GetLines();
    return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                          [&](const auto& line) { return line.find(text) != std::string::npos; }));
}
