#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <wire/Tree.h>

#include "ArgumentType.h"
#include "DebugSwitches.h"

namespace sim {

// A switch of a debug menu as it travels: branch {0: text name, 1: 8 bits state, 2: 32 bits id}; a
// list of them is a branch with such a branch for each, tagged with its place.
extern const ArgumentType kMenuItem;
extern const ArgumentType kMenuItemList;

struct MenuItemView {
    std::string_view name;
    bool on = false;
    std::uint32_t id = 0;
};
MenuItemView ReadMenuItem(const wire::Node& node);

// Writes a whole list, straight into the buffer.
void WriteMenuItems(wire::TreeWriter& tree, std::int16_t place,
                    const std::vector<DebugSwitches::Item>& items);

} // namespace sim
