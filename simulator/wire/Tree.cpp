#include <wire/Tree.h>

#include <bit>
#include <stdexcept>

static_assert(std::endian::native == std::endian::little,
              "the wire is little-endian, and is written as it stands");

namespace wire {

namespace {

bool IsWellFormed(NodeCursor cursor, int depth) {
    Node node;
    while (cursor.Next(node)) {
        if (node.IsBranch() && (depth == 0 || !IsWellFormed(NodeCursor(node), depth - 1)))
            return false;
    }
    return !cursor.IsMalformed();
}

std::uint32_t CheckedSize(std::size_t size) {
    if (size > UINT32_MAX)
        throw std::length_error("a node's content is limited to 4 GiB");
    return static_cast<std::uint32_t>(size);
}

} // namespace

bool IsWellFormed(const void* data, std::size_t size) {
    return IsWellFormed(NodeCursor(data, size), kMaxDepth);
}

void TreeWriter::PutLeaf(std::int16_t tag, NodeKind kind, const void* data, std::size_t size,
                         Direction direction) {
    const std::uint32_t length = CheckedSize(size);
    unsigned char* place = m_buffer.Extend(kNodeHeaderSize + size);
    EncodeNodeHeader(place, tag, kind, direction, length);
    if (size > 0)
        std::memcpy(place + kNodeHeaderSize, data, size);
}

void TreeWriter::PutText(std::int16_t tag, std::string_view text, Direction direction) {
    const std::size_t begin = BeginBranch(tag, direction);
    PutValue(0, CheckedSize(text.size()));
    if (!text.empty())
        PutLeaf(1, NodeKind::Array, text.data(), text.size());
    EndBranch(begin);
}

std::size_t TreeWriter::BeginBranch(std::int16_t tag, Direction direction) {
    const std::size_t begin = m_buffer.GetSize();
    EncodeNodeHeader(m_buffer.Extend(kNodeHeaderSize), tag, NodeKind::Branch, direction, 0);
    return begin;
}

void TreeWriter::EndBranch(std::size_t begin) {
    const std::uint32_t size = CheckedSize(m_buffer.GetSize() - begin - kNodeHeaderSize);
    std::memcpy(m_buffer.GetData() + begin + 4, &size, 4);
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
    if (!cursor.Next(child) || child.tag != 1 || child.kind != NodeKind::Array ||
        child.size != length)
        return false;
    text = child.GetBytes();
    return cursor.IsAtEnd();
}

} // namespace wire
