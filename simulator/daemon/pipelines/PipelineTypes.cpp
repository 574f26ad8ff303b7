#include "PipelineTypes.h"

#include <array>

#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

// Numbers tagged by their place. False unless the branch holds exactly so many.
template <std::size_t Count>
bool ReadNumbers(const Node& branch, std::array<std::int32_t, Count>& numbers) {
    NodeCursor cursor(branch);
    Node node;
    for (std::size_t place = 0; place < Count; ++place) {
        if (!cursor.Next(node) || node.tag != static_cast<std::int16_t>(place) ||
            !node.Get(numbers[place]))
            return false;
    }
    return cursor.IsAtEnd();
}

template <std::size_t Count> bool CheckNumbers(const Node& node) {
    std::array<std::int32_t, Count> numbers{};
    return ReadNumbers(node, numbers);
}

json RectToJson(const Node& node) {
    return node.IsBranch() ? ReadRect(node).Describe() : TreeToJson(node);
}

json TvModeToJson(const Node& node) {
    if (!node.IsBranch())
        return TreeToJson(node);
    const TvMode tvMode = ReadTvMode(node);
    return {{"antenna", tvMode.antenna}, {"serviceMode", tvMode.serviceMode}};
}

} // namespace

const ArgumentType kRect{"rectangle", NodeKind::Branch, 0, CheckNumbers<4>, RectToJson};
const ArgumentType kTvMode{"TV mode", NodeKind::Branch, 0, CheckNumbers<2>, TvModeToJson};
const ArgumentType kStatus{"status", NodeKind::Branch, 0, nullptr, TreeToJson};

Rect ReadRect(const Node& node) {
    std::array<std::int32_t, 4> numbers{};
    ReadNumbers(node, numbers);
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

TvMode ReadTvMode(const Node& node) {
    std::array<std::int32_t, 2> numbers{};
    ReadNumbers(node, numbers);
    return {numbers[0], numbers[1]};
}

void WriteTvMode(wire::TreeWriter& tree, std::int16_t place, const TvMode& tvMode) {
    const std::size_t branch = tree.BeginBranch(place);
    tree.PutValue(0, tvMode.antenna);
    tree.PutValue(1, tvMode.serviceMode);
    tree.EndBranch(branch);
}

} // namespace sim
