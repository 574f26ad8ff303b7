#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bench {

// One measured figure and what it is held against. `script/bench` prints it.
struct TSFigure {
    std::string m_Name;
    double m_Value = 0;
    std::string m_Unit;
    // What was measured beside it in the same run, in the same unit.
    std::map<std::string, double> m_Peers;
    // The figure as a multiple of what it is held against.
    std::optional<double> m_Ratio;
    // What the ratio must not pass; with m_AtLeast, what it must not fall below.
    std::optional<double> m_Limit;
    bool m_AtLeast = false;
};

// Writes the figures to standard output as one JSON object. False when that failed.
bool PrintFigures(const std::vector<TSFigure>& figures);

} // namespace bench
