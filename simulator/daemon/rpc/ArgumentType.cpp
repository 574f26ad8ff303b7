#include "ArgumentType.h"

#include <locale>
#include <string>
#include <vector>

#include <base/Printed.h>
#include <values/ServiceFields.h>
#include <values/Values.h>

#include "ValueJson.h"

namespace sim {

using nlohmann::json;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

template <class T> constexpr ArgumentType ValueType(const char* name) {
    constexpr bool kIsScalar = values::Scalar<T>;
    return {name, kIsScalar ? NodeKind::Value : NodeKind::Branch, kIsScalar ? sizeof(T) : 0,
            [](const Node& node) {
                T value{};
                return values::ReadArgument(node, value, values::Missing::Refused);
            },
            [](const Node& node) {
                T value{};
                values::ReadArgument(node, value, values::Missing::Kept);
                return ToJson(value);
            }};
}

json RecordToJson(const Node& branch) {
    json described = json::object();
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node)) {
        const values::ServiceField* field = values::FindServiceField(node.tag);
        std::int32_t number = 0;
        std::uint64_t id = 0;
        json& value = described[field != nullptr ? field->name : std::to_string(node.tag)];
        if (node.Get(number))
            value = number;
        else if (node.Get(id))
            value = ToHexText(id);
    }
    return described;
}

json RecordListToJson(const Node& branch) {
    json described = json::array();
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node))
        described.push_back(RecordToJson(node));
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

const ArgumentType kInt = ValueType<std::int32_t>("int");
const ArgumentType kUInt = ValueType<std::uint32_t>("unsigned");
const ArgumentType kUShort = ValueType<std::uint16_t>("unsigned short");
const ArgumentType kBool = ValueType<bool>("bool");
const ArgumentType kNumber64 = ValueType<std::uint64_t>("64 bits");
const ArgumentType kText = ValueType<std::string_view>("text");
const ArgumentType kIntList = ValueType<std::vector<std::int32_t>>("list of ints");
const ArgumentType kRect = ValueType<values::Rect>("rectangle");
const ArgumentType kTvMode = ValueType<values::TvMode>("TV mode");
const ArgumentType kCriteria = ValueType<values::Criteria>("criteria");
const ArgumentType kServiceCodes = ValueType<std::vector<values::ServiceCode>>("list of services");
const ArgumentType kMenuItem = ValueType<values::MenuItem>("menu item");
const ArgumentType kMenuItemList = ValueType<std::vector<values::MenuItem>>("list of menu items");
const ArgumentType kProgramme = ValueType<values::Programme>("programme");
const ArgumentType kStatus = ValueType<values::Status>("status");
// Only sent by the daemon.
const ArgumentType kRecord{"record", NodeKind::Branch, 0, nullptr, RecordToJson};
const ArgumentType kRecordList{"records", NodeKind::Branch, 0, nullptr, RecordListToJson};
const ArgumentType kAnything{"anything", NodeKind::Branch, 0, nullptr, TreeToJson};

json ToHexText(std::uint64_t value) {
    return Printed("0x%llx", static_cast<unsigned long long>(value));
}

// Up to the first malformed UTF-16 unit.
std::string ToUtf8(const std::u16string& text) {
    const auto& codec = std::use_facet<std::codecvt<char16_t, char8_t, std::mbstate_t>>(std::locale::classic());
    std::u8string utf8(text.size() * 3, u8'\0'); // a unit takes at most three bytes
    std::mbstate_t state{};
    const char16_t* read = nullptr;
    char8_t* end = nullptr;
    codec.out(state, text.data(), text.data() + text.size(), read, utf8.data(), utf8.data() + utf8.size(), end);
    return {utf8.data(), end};
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
