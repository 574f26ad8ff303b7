#include "Form.h"

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Printed.h"

namespace sim {

using nlohmann::json;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

template <class T> json NumberWords(const Node& node) {
    T value{};
    node.Get(value);
    return value;
}

json BoolWords(const Node& node) {
    std::uint8_t value = 0;
    node.Get(value);
    return value != 0;
}

json HexWords(const Node& node) {
    std::uint64_t value = 0;
    node.Get(value);
    return ToHexWord(value);
}

bool CheckText(const Node& node) {
    std::string_view text;
    return wire::GetText(node, text);
}

// Reads what is there of a text that may have been cut short.
json TextWords(const Node& node) {
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

json IntListWords(const Node& node) {
    json words = json::array();
    NodeCursor cursor(node);
    Node child;
    if (!cursor.Next(child))
        return words;
    for (std::uint32_t at = 0; at + 4 <= child.size; at += 4) {
        std::int32_t value = 0;
        std::memcpy(&value, child.data + at, 4);
        words.push_back(value);
    }
    return words;
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

bool Form::Fits(const Node& node) const {
    if (this == &kAnything)
        return true;
    if (node.kind != kind || (size != 0 && node.size != size))
        return false;
    return check == nullptr || check(node);
}

const Form kInt{"int", NodeKind::Value, 4, nullptr, NumberWords<std::int32_t>};
const Form kUInt{"unsigned", NodeKind::Value, 4, nullptr, NumberWords<std::uint32_t>};
const Form kUShort{"unsigned short", NodeKind::Value, 2, nullptr, NumberWords<std::uint16_t>};
const Form kBool{"bool", NodeKind::Value, 1, nullptr, BoolWords};
const Form kNumber64{"64 bits", NodeKind::Value, 8, nullptr, HexWords};
const Form kText{"text", NodeKind::Branch, 0, CheckText, TextWords};
const Form kIntList{"list of ints", NodeKind::Branch, 0, CheckIntList, IntListWords};
const Form kAnything{"anything", NodeKind::Branch, 0, nullptr, ToTreeWords};

json ToHexWord(std::uint64_t value) {
    return Printed("0x%llx", static_cast<unsigned long long>(value));
}

json ToTreeWords(const Node& node) {
    switch (node.kind) {
    case NodeKind::Branch: {
        json children = json::array();
        NodeCursor cursor(node);
        Node child;
        while (cursor.Next(child))
            children.push_back({{"tag", child.tag}, {"content", ToTreeWords(child)}});
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
