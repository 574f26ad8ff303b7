#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// Runs a program to its end, with nothing on its standard input, and returns what it printed. Ends
// this program when it fails.
std::string OutputOf(const std::vector<std::string>& words);

// Runs a program to its end with `input` piped in and its output drawn off through a pipe.
struct TSPipedRun {
    double m_Seconds = 0; // from its start to its end
    std::string m_Output; // its first bytes, up to the asked number
    std::size_t m_OutputSize = 0;
};
TSPipedRun RunPiped(const std::vector<std::string>& words, const std::string& input,
                    std::size_t kept = 0);

} // namespace bench
