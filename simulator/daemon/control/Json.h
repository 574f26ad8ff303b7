#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

// JSON from outside, and to there.
namespace sim {

// What is nested deeper is refused: nobody needs it, and comparing or printing it would take a stack of any size.
constexpr int kMaxJsonDepth = 16;

// False, and `value` as it was, when the text is not JSON or is nested too deep.
bool ParseJson(const std::string& text, nlohmann::json& value);

// On one line, without its end; never invalid UTF-8.
std::string ToText(const nlohmann::json& value);

} // namespace sim
