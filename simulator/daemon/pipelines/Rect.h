#pragma once

#include <cstdint>

#include <nlohmann/json_fwd.hpp>

namespace sim {

// In pixels.
struct Rect {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const Rect&) const = default;
    // Has an area, all of it on the TV's screen.
    bool IsOnScreen() const;
    nlohmann::json Describe() const;
};

constexpr std::int32_t kScreenWidth = 1920;
constexpr std::int32_t kScreenHeight = 1080;

} // namespace sim
