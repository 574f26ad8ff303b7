#include "ServiceTypes.h"

#include <cstring>
#include <string>

#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

static_assert(sizeof(Condition) == 12, "it travels as it stands");

constexpr std::int16_t kConditionsTag = 0;
constexpr std::int16_t kFetchedTag = 1;
constexpr std::int16_t kTitleTag = 2;
constexpr std::size_t kCodeSize = 12; // an id and a code

bool IsArrayOf(const Node& node, std::size_t elementSize) {
    return node.kind == NodeKind::Array && node.size % elementSize == 0;
}

// Whole elements; a node that the journal has cut short may end within one.
template <class T> std::vector<T> ReadArray(const Node& node) {
    std::vector<T> elements(node.size / sizeof(T));
    if (!elements.empty())
        std::memcpy(elements.data(), node.data, elements.size() * sizeof(T));
    return elements;
}

bool CheckCriteria(const Node& branch) {
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node)) {
        if (node.tag == kConditionsTag ? !IsArrayOf(node, sizeof(Condition))
                                       : node.tag != kFetchedTag || !IsArrayOf(node, 4))
            return false;
    }
    for (const Condition& condition : ReadCriteria(branch).conditions) {
        if (condition.differs != 0 && condition.differs != 1)
            return false;
    }
    return true;
}

json CriteriaToJson(const Node& branch) {
    const Criteria criteria = ReadCriteria(branch);
    json conditions = json::array();
    for (const Condition& condition : criteria.conditions)
        conditions.push_back({{"field", condition.field},
                              {"is", condition.differs == 0 ? "equal" : "different"},
                              {"value", condition.value}});
    return {{"where", conditions}, {"fetch", criteria.fetched}};
}

json RecordToJson(const Node& branch) {
    json described = json::object();
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node)) {
        std::int32_t number = 0;
        std::uint64_t id = 0;
        json& value = described[std::to_string(node.tag)];
        if (node.Get(number))
            value = number;
        else if (node.Get(id))
            value = ToHexText(id);
    }
    return described;
}

json RecordsToJson(const Node& branch) {
    json described = json::array();
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node))
        described.push_back(RecordToJson(node));
    return described;
}

bool CheckServiceCodes(const Node& branch) {
    NodeCursor cursor(branch);
    Node node;
    return !cursor.Next(node) || (node.tag == 0 && IsArrayOf(node, kCodeSize) && cursor.IsAtEnd());
}

json ServiceCodesToJson(const Node& branch) {
    json described = json::array();
    NodeCursor cursor(branch);
    Node node;
    if (!cursor.Next(node))
        return described;
    for (std::size_t at = 0; at + kCodeSize <= node.size; at += kCodeSize) {
        std::uint64_t id = 0;
        std::uint32_t code = 0;
        std::memcpy(&id, node.data + at, sizeof id);
        std::memcpy(&code, node.data + at + sizeof id, sizeof code);
        described.push_back({ToHexText(id), code});
    }
    return described;
}

json ProgrammeToJson(const Node& branch) {
    json described = json::object();
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node)) {
        std::uint64_t start = 0;
        std::uint32_t duration = 0;
        if (node.Get(start))
            described["start"] = start;
        else if (node.Get(duration))
            described["duration"] = duration;
        else if (node.tag == kTitleTag)
            described["titleSize"] = node.size / sizeof(char16_t);
    }
    return described;
}

} // namespace

const ArgumentType kCriteria{"criteria", NodeKind::Branch, 0, CheckCriteria, CriteriaToJson};
const ArgumentType kRecord{"record", NodeKind::Branch, 0, nullptr, RecordToJson};
const ArgumentType kRecords{"records", NodeKind::Branch, 0, nullptr, RecordsToJson};
const ArgumentType kServiceCodes{"list of services", NodeKind::Branch, 0, CheckServiceCodes,
                                 ServiceCodesToJson};
const ArgumentType kProgramme{"programme", NodeKind::Branch, 0, nullptr, ProgrammeToJson};

Criteria ReadCriteria(const Node& branch) {
    Criteria criteria;
    NodeCursor cursor(branch);
    Node node;
    while (cursor.Next(node)) {
        if (node.tag == kConditionsTag)
            criteria.conditions = ReadArray<Condition>(node);
        else if (node.tag == kFetchedTag)
            criteria.fetched = ReadArray<std::int32_t>(node);
    }
    return criteria;
}

std::vector<std::uint64_t> ReadServiceIds(const Node& branch) {
    std::vector<std::uint64_t> ids;
    NodeCursor cursor(branch);
    Node node;
    if (!cursor.Next(node))
        return ids;
    ids.reserve(node.size / kCodeSize);
    for (std::size_t at = 0; at + kCodeSize <= node.size; at += kCodeSize) {
        std::uint64_t id = 0;
        std::memcpy(&id, node.data + at, sizeof id);
        ids.push_back(id);
    }
    return ids;
}

} // namespace sim
