#include "Rect.h"

#include <nlohmann/json.hpp>

namespace sim {

bool Rect::IsOnScreen() const {
    return x >= 0 && y >= 0 && width > 0 && height > 0 && x <= kScreenWidth - width &&
           y <= kScreenHeight - height;
}

nlohmann::json Rect::Describe() const {
    return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

} // namespace sim
