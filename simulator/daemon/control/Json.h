#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

// Parsing and printing of JSON.
namespace sim {

// Deeper nesting is rejected: comparing or printing it would need an unlimited stack.
constexpr int kMaxJsonDepth = 16;

// False, with `value` unchanged, if the text is not JSON or nested too deep.
bool ParseJson(const std::string& text, nlohmann::json& value);

// On one line, without the line end; always valid UTF-8.
std::string ToText(const nlohmann::json& value);

} // namespace sim
