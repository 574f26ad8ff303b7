#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// Runs a program to its end with empty standard input, and returns its output. Ends this program if
// it fails.
std::string OutputOf(const std::vector<std::string>& words);

// Runs a program to its end with its standard input and output on pipes: writes `input`, reads all
// output and keeps the first `kept` bytes.
struct PipedRun {
    double seconds = 0; // from its start to its end
    std::string output; // the kept bytes
    std::size_t outputSize = 0;
};
PipedRun RunPiped(const std::vector<std::string>& words, const std::string& input, std::size_t kept = 0);

} // namespace bench
