#pragma once

#include <string>

// The viewer's name in messages.
constexpr char kProgram[] = "dlogutil";

// Follows one tag of the TV's log and writes each line with a single write to standard output.
// Sleeps otherwise.
class LogViewer {
public:
    explicit LogViewer(std::string tag);

    // Runs until the TV has ended or the reader of standard output has gone; returns an exit
    // status. If no TV can be followed or standard output not be written, writes the reason to
    // standard error.
    int Run();

private:
    std::string m_tag;
};
