#include "MenuItemType.h"

#include <cstring>
#include <string>

#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;
using wire::Direction;
using wire::kNodeHeaderSize;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

constexpr std::int16_t kName = 0;
constexpr std::int16_t kState = 1;
constexpr std::int16_t kId = 2;

bool CheckItem(const Node& node) {
    NodeCursor cursor(node);
    Node child;
    bool hasId = false;
    while (cursor.Next(child)) {
        std::string_view name;
        std::uint8_t state = 0;
        std::uint32_t id = 0;
        if ((child.tag == kName && !wire::GetText(child, name)) ||
            (child.tag == kState && !child.Get(state)) || (child.tag == kId && !child.Get(id)))
            return false;
        hasId = hasId || child.tag == kId;
    }
    return hasId;
}

bool CheckItems(const Node& node) {
    NodeCursor cursor(node);
    Node child;
    while (cursor.Next(child)) {
        if (!child.IsBranch() || !CheckItem(child))
            return false;
    }
    return true;
}

json ItemToJson(const Node& node) {
    const MenuItemView item = ReadMenuItem(node);
    return {{"name", std::string(item.name)}, {"state", item.on}, {"id", item.id}};
}

json ItemsToJson(const Node& node) {
    json described = json::array();
    NodeCursor cursor(node);
    Node child;
    while (cursor.Next(child))
        described.push_back(ItemToJson(child));
    return described;
}

} // namespace

const ArgumentType kMenuItem{"menu item", NodeKind::Branch, 0, CheckItem, ItemToJson};
const ArgumentType kMenuItemList{"list of menu items", NodeKind::Branch, 0, CheckItems,
                                 ItemsToJson};

MenuItemView ReadMenuItem(const Node& node) {
    MenuItemView item;
    NodeCursor cursor(node);
    Node child;
    while (cursor.Next(child)) {
        std::uint8_t state = 0;
        if (child.tag == kName)
            wire::GetText(child, item.name);
        else if (child.tag == kState && child.Get(state))
            item.on = state != 0;
        else if (child.tag == kId)
            child.Get(item.id);
    }
    return item;
}

void WriteMenuItems(wire::TreeWriter& tree, std::int16_t place,
                    const std::vector<DebugSwitches::Item>& items) {
    // Of an item but its name's bytes: six nodes, of which the name's bytes' is the only one that
    // can be missing.
    constexpr std::size_t kFixed = 5 * kNodeHeaderSize + 4 + 1 + 4;
    const std::size_t list = tree.BeginBranch(place);
    std::int16_t tag = 0;
    for (const DebugSwitches::Item& item : items) {
        const auto length = static_cast<std::uint32_t>(item.name.size());
        const std::uint32_t bytes =
            length == 0 ? 0 : static_cast<std::uint32_t>(kNodeHeaderSize) + length;
        unsigned char* to = tree.GetBuffer().Extend(kFixed + bytes);
        const auto begin = [&to](std::int16_t nodeTag, NodeKind kind, std::size_t size) {
            wire::EncodeNodeHeader(to, nodeTag, kind, Direction::Out,
                                   static_cast<std::uint32_t>(size));
            to += kNodeHeaderSize;
        };
        const auto put = [&to](const void* data, std::size_t size) {
            std::memcpy(to, data, size);
            to += size;
        };
        begin(tag++, NodeKind::Branch, kFixed - kNodeHeaderSize + bytes);
        begin(kName, NodeKind::Branch, kNodeHeaderSize + sizeof length + bytes);
        begin(0, NodeKind::Value, sizeof length);
        put(&length, sizeof length);
        if (length > 0) {
            begin(1, NodeKind::Array, length);
            put(item.name.data(), length);
        }
        begin(kState, NodeKind::Value, 1);
        *to++ = item.on ? 1 : 0;
        begin(kId, NodeKind::Value, sizeof item.id);
        put(&item.id, sizeof item.id);
    }
    tree.EndBranch(list);
}

} // namespace sim
