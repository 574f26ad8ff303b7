#include "Json.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;

bool ParseJson(const std::string& text, json& value) {
    const auto checkDepth = [](int depth, json::parse_event_t, const json&) {
        if (depth > kMaxJsonDepth)
            throw std::length_error("too deep");
        return true;
    };
    try {
        value = json::parse(text, checkDepth);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::string ToText(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace sim
