#include "Figure.h"

#include <cstdlib>
#include <iostream>

#include <nlohmann/json.hpp>

namespace bench {

namespace {

nlohmann::ordered_json NumberOrNull(const std::optional<double>& number) {
    return number ? nlohmann::ordered_json(*number) : nlohmann::ordered_json(nullptr);
}

} // namespace

bool PrintFigures(const std::vector<Figure>& figures) {
    nlohmann::ordered_json all;
    for (const Figure& figure : figures) {
        nlohmann::ordered_json& one = all[figure.name];
        one["value"] = figure.value;
        one["unit"] = figure.unit;
        one["peers"] = figure.peers.empty() ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(figure.peers);
        one["ratio"] = NumberOrNull(figure.ratio);
        one["limit"] = NumberOrNull(figure.limit);
        if (figure.atLeast)
            one["at_least"] = true;
    }
    std::cout << all.dump() << std::endl;
    return std::cout.good();
}

void GiveUp(const char* what) {
    std::cerr << "bench: " << what << std::endl;
    std::_Exit(1);
}

} // namespace bench
