#pragma once

#include <string>
#include <vector>

// The lines that have come into the device's log since this was made. The log of a test program is
// a file of its own.
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
