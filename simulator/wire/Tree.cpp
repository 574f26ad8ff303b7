#include <bit>
#include <stdexcept>

#include <wire/Tree.h>

static_assert(std::endian::native == std::endian::little,
              "the wire is little-endian, and values are copied from memory");

namespace wire {

namespace {

bool IsWellFormed(NodeCursor cursor, int depth) {
    Node node;
    while (cursor.Next(node)) {
        if (node.direction != Direction::Out)
            return false;
        if (node.IsBranch() && (depth == 0 || !IsWellFormed(NodeCursor(node), depth - 1)))
            return false;
    }
    return !cursor.IsMalformed();
}

} // namespace

bool IsWellFormed(const void* data, std::size_t size) {
    return IsWellFormed(NodeCursor(data, size), kMaxDepth);
}

void TreeWriter::PutText(std::int16_t tag, std::string_view text, Direction direction) {
    const std::size_t begin = BeginBranch(tag, direction);
    PutValue(0, CheckSize(text.size()));
    if (!text.empty())
        PutLeaf(1, NodeKind::Array, text.data(), text.size());
    EndBranch(begin);
}

void TreeWriter::ThrowTooLong() {
    throw std::length_error("a node's content is limited to 4 GiB");
}

bool GetText(const Node& node, std::string_view& text) {
    if (!node.IsBranch())
        return false;
    NodeCursor cursor(node);
    Node child;
    std::uint32_t length = 0;
    if (!cursor.Next(child) || child.tag != 0 || !child.Get(length))
        return false;
    if (length == 0) {
        text = {};
        return cursor.IsAtEnd();
    }
    if (!cursor.Next(child) || child.tag != 1 || child.kind != NodeKind::Array || child.size != length)
        return false;
    text = child.GetBytes();
    return cursor.IsAtEnd();
}

} // namespace wire
