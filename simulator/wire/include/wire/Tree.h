#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <wire/Buffer.h>

// The flat tree: a node is an 8-byte header and its content, a branch's content is a sequence of
// nodes. See docs/wire-format.md.
namespace wire {

enum class NodeKind : std::uint8_t {
    Value = 1,  // a plain value
    Array = 2,  // bytes, or elements of equal size
    Branch = 3, // nodes
    Length = 4, // only a 32-bit length, in place of an out text
};

enum class Direction : std::uint8_t { Out = 0, In = 1 };

constexpr std::size_t kNodeHeaderSize = 8;
// A deeper tree is rejected, so that a malicious one cannot exhaust a reader's stack.
constexpr int kMaxDepth = 32;

// Writes a node header to the 8 bytes at `place`.
inline void EncodeNodeHeader(unsigned char* place, std::int16_t tag, NodeKind kind, Direction direction,
                             std::uint32_t size) {
    std::memcpy(place, &tag, 2);
    place[2] = static_cast<unsigned char>(kind);
    place[3] = static_cast<unsigned char>(direction);
    std::memcpy(place + 4, &size, 4);
}

// Copies a node's content. Most are single values, for which a call of memcpy costs more than the
// copy.
inline void CopyContent(void* to, const void* from, std::size_t size) {
    switch (size) {
    case 0:
        break;
    case 1:
        std::memcpy(to, from, 1);
        break;
    case 4:
        std::memcpy(to, from, 4);
        break;
    case 8:
        std::memcpy(to, from, 8);
        break;
    default:
        std::memcpy(to, from, size);
    }
}

// A node for reading; `data` points into the message.
struct Node {
    std::int16_t tag = 0;
    NodeKind kind = NodeKind::Value;
    Direction direction = Direction::Out;
    const unsigned char* data = nullptr;
    std::uint32_t size = 0;

    bool IsBranch() const { return kind == NodeKind::Branch; }
    // Copies a value of exactly T's size; false, with `value` unchanged, if the node is not a value
    // of that size.
    template <class T> bool Get(T& value) const {
        if (kind != NodeKind::Value || size != sizeof(T))
            return false;
        std::memcpy(&value, data, sizeof(T));
        return true;
    }
    std::string_view GetBytes() const { return {reinterpret_cast<const char*>(data), size}; }
};

// Iterates over a sequence of nodes. A node whose length does not fit ends the iteration as
// malformed.
class NodeCursor {
public:
    NodeCursor(const void* data, std::size_t size)
        : m_next(static_cast<const unsigned char*>(data)), m_end(m_next + size) {}
    explicit NodeCursor(const Node& branch) : NodeCursor(branch.data, branch.size) {}

    // Reads the next node; false at the end or for a malformed one.
    bool Next(Node& node) {
        const auto left = static_cast<std::size_t>(m_end - m_next);
        if (left < kNodeHeaderSize) {
            m_malformed = m_malformed || left > 0;
            return false;
        }
        std::uint32_t size = 0;
        std::memcpy(&size, m_next + 4, 4);
        const unsigned kind = m_next[2];
        if (m_malformed || size > left - kNodeHeaderSize || kind - static_cast<unsigned>(NodeKind::Value) > 3u ||
            m_next[3] > 1) {
            m_malformed = true;
            return false;
        }
        std::memcpy(&node.tag, m_next, 2);
        node.kind = static_cast<NodeKind>(kind);
        node.direction = static_cast<Direction>(m_next[3]);
        node.data = m_next + kNodeHeaderSize;
        node.size = size;
        m_next = node.data + size;
        return true;
    }
    bool IsMalformed() const { return m_malformed; }
    bool IsAtEnd() const { return m_next == m_end; }
    // Start of the next node.
    const unsigned char* GetPlace() const { return m_next; }

private:
    const unsigned char* m_next;
    const unsigned char* m_end;
    bool m_malformed = false;
};

// True if every node of the sequence, at every depth, is complete, of a known kind, and out: only the
// arguments of a call, which are not checked here, have a direction.
bool IsWellFormed(const void* data, std::size_t size);

// Writes nodes at the end of a buffer. The length of a branch is written when the branch ends.
class TreeWriter {
public:
    explicit TreeWriter(Buffer& buffer) : m_buffer(buffer) {}

    void PutLeaf(std::int16_t tag, NodeKind kind, const void* data, std::size_t size,
                 Direction direction = Direction::Out) {
        const std::uint32_t length = CheckSize(size);
        unsigned char* place = m_buffer.Extend(kNodeHeaderSize + size);
        EncodeNodeHeader(place, tag, kind, direction, length);
        CopyContent(place + kNodeHeaderSize, data, size);
    }
    template <class T> void PutValue(std::int16_t tag, const T& value, Direction direction = Direction::Out) {
        PutLeaf(tag, NodeKind::Value, &value, sizeof value, direction);
    }
    // The encoding of texts: a branch with the length (tag 0, 32 bits) and, unless it is 0, the
    // bytes (tag 1).
    void PutText(std::int16_t tag, std::string_view text, Direction direction = Direction::Out);
    // Begins a branch; the result is passed to EndBranch, innermost first.
    std::size_t BeginBranch(std::int16_t tag, Direction direction = Direction::Out) {
        const std::size_t begin = m_buffer.GetSize();
        EncodeNodeHeader(m_buffer.Extend(kNodeHeaderSize), tag, NodeKind::Branch, direction, 0);
        return begin;
    }
    void EndBranch(std::size_t begin) {
        const std::uint32_t size = CheckSize(m_buffer.GetSize() - begin - kNodeHeaderSize);
        std::memcpy(m_buffer.GetData() + begin + 4, &size, 4);
    }

    Buffer& GetBuffer() { return m_buffer; }

private:
    // A node's content is limited by its header; std::length_error beyond.
    static std::uint32_t CheckSize(std::size_t size) {
        if (size > UINT32_MAX)
            ThrowTooLong();
        return static_cast<std::uint32_t>(size);
    }
    [[noreturn]] static void ThrowTooLong();

    Buffer& m_buffer;
};

// Reads a text written by PutText. False, with `text` unchanged, for anything else.
bool GetText(const Node& node, std::string_view& text);

} // namespace wire
