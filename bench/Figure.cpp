#include "Figure.h"

#include <iostream>

#include <nlohmann/json.hpp>

namespace bench {

namespace {

nlohmann::ordered_json NumberOrNull(const std::optional<double>& number) {
    return number ? nlohmann::ordered_json(*number) : nlohmann::ordered_json(nullptr);
}

} // namespace

bool PrintFigures(const std::vector<TSFigure>& figures) {
    nlohmann::ordered_json all;
    for (const TSFigure& figure : figures) {
        nlohmann::ordered_json& one = all[figure.m_Name];
        one["value"] = figure.m_Value;
        one["unit"] = figure.m_Unit;
        one["peers"] = figure.m_Peers.empty() ? nlohmann::ordered_json(nullptr)
                                              : nlohmann::ordered_json(figure.m_Peers);
        one["ratio"] = NumberOrNull(figure.m_Ratio);
        one["limit"] = NumberOrNull(figure.m_Limit);
        if (figure.m_AtLeast)
            one["at_least"] = true;
    }
    std::cout << all.dump() << std::endl;
    return std::cout.good();
}

} // namespace bench
