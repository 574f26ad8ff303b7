#pragma once

#include <string>
#include <vector>

// The lines written to the device's log since construction. Each test program has its own log file.
class LogWatch {
public:
    LogWatch();

    std::vector<std::string> GetLines() const;
    // How many of them contain the text.
    int Count(const std::string& text) const;

    static const std::string& GetPath();

private:
    long m_begin;
};
