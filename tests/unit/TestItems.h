#pragma once

#include <string>
#include <vector>

#include <zarn/MenuItem.h>

inline TSMenuItem MakeItem(const std::string& name, bool state, unsigned int id) {
    TSMenuItem item;
    item.setName(name);
    item.setState(state);
    item.setID(id);
    return item;
}

// "name on 7".
inline std::string ToText(const TSMenuItem& item) {
    return item.getName() + (item.getState() ? " on " : " off ") + std::to_string(item.getID());
}

// "first on 7, second off 8".
inline std::string ToText(const std::vector<TSMenuItem>& items) {
    std::string text;
    for (const TSMenuItem& item : items)
        text += (text.empty() ? "" : ", ") + ToText(item);
    return text;
}
