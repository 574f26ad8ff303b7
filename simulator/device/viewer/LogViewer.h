#pragma once

#include <string>

// Follows the lines of one tag of the TV's log and writes each whole to standard output as it
// comes. Wakes up for nothing else.
class LogViewer {
public:
    explicit LogViewer(std::string tag);

    // Runs until the TV has ended or nobody reads standard output any more; an exit status. Where
    // no TV can be followed, a line on standard error says why.
    int Run();

private:
    std::string m_tag;
};
