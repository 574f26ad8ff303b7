#include "ArgumentType.h"

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <base/Printed.h>

namespace sim {

using nlohmann::json;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

template <class T> json NumberToJson(const Node& node) {
    T value{};
    node.Get(value);
    return value;
}

json BoolToJson(const Node& node) {
    std::uint8_t value = 0;
    node.Get(value);
    return value != 0;
}

json HexToJson(const Node& node) {
    std::uint64_t value = 0;
    node.Get(value);
    return ToHexText(value);
}

bool CheckText(const Node& node) {
    std::string_view text;
    return wire::GetText(node, text);
}

// Reads what is there of a text that may have been cut short.
json TextToJson(const Node& node) {
    NodeCursor cursor(node);
    Node child;
    while (cursor.Next(child)) {
        if (child.tag == 1 && child.kind == NodeKind::Array)
            return std::string(child.GetBytes());
    }
    return "";
}

bool CheckIntList(const Node& node) {
    NodeCursor cursor(node);
    Node child;
    if (!cursor.Next(child))
        return true;
    return child.tag == 0 && child.kind == NodeKind::Array && child.size % 4 == 0 &&
           cursor.IsAtEnd();
}

json IntListToJson(const Node& node) {
    json described = json::array();
    NodeCursor cursor(node);
    Node child;
    if (!cursor.Next(child))
        return described;
    for (std::uint32_t at = 0; at + 4 <= child.size; at += 4) {
        std::int32_t value = 0;
        std::memcpy(&value, child.data + at, 4);
        described.push_back(value);
    }
    return described;
}

std::string ToHexDigits(std::string_view bytes) {
    static const char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

} // namespace

bool ArgumentType::Fits(const Node& node) const {
    if (this == &kAnything)
        return true;
    if (node.kind != kind || (size != 0 && node.size != size))
        return false;
    return check == nullptr || check(node);
}

const ArgumentType kInt{"int", NodeKind::Value, 4, nullptr, NumberToJson<std::int32_t>};
const ArgumentType kUInt{"unsigned", NodeKind::Value, 4, nullptr, NumberToJson<std::uint32_t>};
const ArgumentType kUShort{"unsigned short", NodeKind::Value, 2, nullptr,
                           NumberToJson<std::uint16_t>};
const ArgumentType kBool{"bool", NodeKind::Value, 1, nullptr, BoolToJson};
const ArgumentType kNumber64{"64 bits", NodeKind::Value, 8, nullptr, HexToJson};
const ArgumentType kText{"text", NodeKind::Branch, 0, CheckText, TextToJson};
const ArgumentType kIntList{"list of ints", NodeKind::Branch, 0, CheckIntList, IntListToJson};
const ArgumentType kAnything{"anything", NodeKind::Branch, 0, nullptr, TreeToJson};

json ToHexText(std::uint64_t value) {
    return Printed("0x%llx", static_cast<unsigned long long>(value));
}

json TreeToJson(const Node& node) {
    switch (node.kind) {
    case NodeKind::Branch: {
        json children = json::array();
        NodeCursor cursor(node);
        Node child;
        while (cursor.Next(child))
            children.push_back({{"tag", child.tag}, {"content", TreeToJson(child)}});
        return children;
    }
    case NodeKind::Length: {
        std::uint32_t length = 0;
        if (node.size == sizeof length)
            std::memcpy(&length, node.data, sizeof length);
        return {{"length", length}};
    }
    case NodeKind::Value:
    case NodeKind::Array:
        break;
    }
    return {{"hex", ToHexDigits(node.GetBytes())}};
}

} // namespace sim
