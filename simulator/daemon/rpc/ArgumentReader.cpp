#include "ArgumentReader.h"

namespace sim {

using wire::Direction;
using wire::Node;
using wire::NodeCursor;
using wire::NodeKind;

namespace {

// The initial value of an out argument is only shown, not used: its kind must match, its content is
// ignored.
bool IsPlausibleOut(const ArgumentType& type, const Node& node) {
    if (type.kind == NodeKind::Value)
        return node.kind == NodeKind::Value && node.size == type.size;
    return node.kind == NodeKind::Branch || node.kind == NodeKind::Length || node.kind == NodeKind::Array;
}

} // namespace

ArgumentReader::ArgumentReader(std::span<const Argument> arguments, const void* tree, std::size_t treeSize)
    : m_arguments(arguments) {
    NodeCursor cursor(tree, treeSize);
    for (std::size_t place = 0; place < arguments.size() && m_fault == nullptr; ++place) {
        m_faultyPlace = place;
        m_fault = cursor.Next(m_nodes.at(place)) ? Check(place) : cursor.IsMalformed() ? "is malformed" : "is missing";
    }
    if (m_fault == nullptr && !cursor.IsAtEnd()) {
        m_faultyPlace = arguments.size();
        m_fault = "is unexpected";
    }
}

// What is wrong with an argument that exists; null: nothing.
const char* ArgumentReader::Check(std::size_t place) const {
    const Node& node = m_nodes.at(place);
    const Argument& argument = m_arguments[place];
    if (node.tag != static_cast<std::int16_t>(place))
        return "is out of order";
    if (node.direction != argument.direction)
        return "has the wrong direction";
    if (node.IsBranch() && !wire::IsWellFormed(node.data, node.size))
        return "has malformed content";
    if (argument.isRead ? !argument.type->Fits(node) : !IsPlausibleOut(*argument.type, node))
        return "has the wrong type";
    return nullptr;
}

std::string ArgumentReader::DescribeFault() const {
    if (m_fault == nullptr)
        return {};
    std::string text = "argument " + std::to_string(m_faultyPlace);
    if (m_faultyPlace < m_arguments.size())
        text +=
            std::string(" (") + m_arguments[m_faultyPlace].name + ": " + m_arguments[m_faultyPlace].type->name + ")";
    return text + " " + m_fault;
}

std::string_view ArgumentReader::Text(std::size_t place) const {
    std::string_view text;
    wire::GetText(At(place), text);
    return text;
}

} // namespace sim
