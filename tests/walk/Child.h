#pragma once

#include <string>
#include <vector>

namespace walk {

// How a process ended.
struct Ending {
    int status = 0;
    int signal = 0;

    bool isGood() const { return status == 0 && signal == 0; }
    bool operator==(const Ending&) const = default;
    // "differs from the prediction", "status 1", "signal 11".
    std::string text() const;
};

// Runs a program to its end. Its report goes where this one's goes, or nowhere.
Ending runChild(const std::string& program, const std::vector<std::string>& arguments, bool quiet);

} // namespace walk
