#pragma once

#include <string>

#include <base/Printed.h>
#include <values/Values.h>

namespace sim {

using values::Rect;

constexpr std::int32_t kScreenWidth = 1920;
constexpr std::int32_t kScreenHeight = 1080;

// "0,0 1920x1080"
inline std::string DescribeRect(const Rect& rect) {
    return Printed("%d,%d %dx%d", rect.x, rect.y, rect.width, rect.height);
}

// Has an area and lies on the TV's screen.
constexpr bool IsOnScreen(const Rect& rect) {
    return rect.x >= 0 && rect.y >= 0 && rect.width > 0 && rect.height > 0 && rect.x <= kScreenWidth - rect.width &&
           rect.y <= kScreenHeight - rect.height;
}

} // namespace sim
