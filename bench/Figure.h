#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bench {

// One measured figure and its references. `script/bench` prints it.
struct Figure {
    std::string name;
    double value = 0;
    std::string unit;
    // What was measured in the same run for comparison, in the same unit.
    std::map<std::string, double> peers;
    // The figure as a multiple of the reference.
    std::optional<double> ratio;
    // The highest accepted ratio; with atLeast, the lowest.
    std::optional<double> limit;
    bool atLeast = false;
};

// Writes the figures to standard output as one JSON object. False on failure.
bool PrintFigures(const std::vector<Figure>& figures);

// Ends the program with a line on standard error: there is no figure without a measurement.
[[noreturn]] void GiveUp(const char* what);

} // namespace bench
