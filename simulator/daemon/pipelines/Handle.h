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
    // "1:0": profile and screen, the pipeline's name in the state and the log.
    std::string ToText() const { return std::to_string(profile) + ":" + std::to_string(screen); }
};

// The main pipeline; it always exists.
constexpr Handle kMainPipeline{1, 0};

} // namespace sim
