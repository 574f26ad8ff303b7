#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace sim {

// Addresses a pipeline.
struct Handle {
    std::int32_t profile = 0;
    std::uint16_t screen = 0;

    auto operator<=>(const Handle&) const = default;
    // "1:0": profile and screen, as the state and the log name a pipeline.
    std::string ToText() const { return std::to_string(profile) + ":" + std::to_string(screen); }
};

// The pipeline of the picture that everybody sees; there from the start.
constexpr Handle kMainPipeline{1, 0};

} // namespace sim
