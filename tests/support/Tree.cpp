#include "Tree.h"

#include <cstdio>

#include <norvex/core/MessageBuffer.h>
#include <wire/Tree.h>

namespace {

std::string Hex(unsigned char byte) {
    char digits[3];
    static_cast<void>(std::snprintf(digits, sizeof digits, "%02x", byte));
    return digits;
}

std::string Content(const wire::Node& node) {
    std::string text;
    switch (node.kind) {
    case wire::NodeKind::Value:
        for (std::uint32_t i = 0; i < node.size; ++i)
            text += Hex(node.data[i]);
        return "value " + text;
    case wire::NodeKind::Array:
        for (std::uint32_t i = 0; i < node.size; ++i) {
            const unsigned char byte = node.data[i];
            const bool plain = byte >= ' ' && byte < 0x7f && byte != '"' && byte != '\\';
            text += plain ? std::string(1, static_cast<char>(byte)) : "\\x" + Hex(byte);
        }
        return "bytes \"" + text + "\"";
    case wire::NodeKind::Length:
        return "length";
    default:
        return "{" + Describe(node.data, node.size) + "}";
    }
}

std::string Leaf(int tag, wire::NodeKind kind, const std::string& bytes) {
    wire::Buffer buffer;
    wire::TreeWriter(buffer).PutLeaf(static_cast<std::int16_t>(tag), kind, bytes.data(), bytes.size());
    return {reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSize()};
}

} // namespace

Tree& Tree::ValueBytes(int tag, const std::string& bytes) {
    m_bytes += Leaf(tag, wire::NodeKind::Value, bytes);
    return *this;
}

Tree& Tree::Array(int tag, const std::string& bytes) {
    m_bytes += Leaf(tag, wire::NodeKind::Array, bytes);
    return *this;
}

Tree& Tree::Branch(int tag, const Tree& children) {
    m_bytes += Leaf(tag, wire::NodeKind::Branch, children.m_bytes);
    return *this;
}

Tree Tree::OfText(const std::string& text) {
    Tree tree;
    tree.Value(0, static_cast<int>(text.size()));
    return text.empty() ? tree : tree.Array(1, text);
}

Tree Tree::OfItem(const std::string& name, bool state, unsigned int id) {
    return Tree().Text(0, name).Value(1, state).Value(2, id);
}

std::string Describe(const void* data, std::size_t size, bool directions) {
    std::string text;
    wire::NodeCursor cursor(data, size);
    for (wire::Node node; cursor.Next(node);) {
        text += text.empty() ? "" : ", ";
        if (directions)
            text += node.direction == wire::Direction::In ? "in " : "out ";
        else
            text += std::to_string(node.tag) + "=";
        text += Content(node);
    }
    return cursor.IsAtEnd() ? text : text + " malformed";
}

std::string Written(TIMarshalable& object) {
    TCMessageBuffer buffer;
    if (!object.Store(&buffer))
        return "refused";
    // Without the tag of the outermost branch.
    return Describe(buffer.GetData(), buffer.GetSize()).substr(2);
}

bool ReadFrom(const std::function<bool(TCTreeBranch&)>& read, const Tree& children) {
    struct Reader : TCMarshalable {
        explicit Reader(const std::function<bool(TCTreeBranch&)>& function) : read(function) {}
        bool TreeToClass(TCTreeBranch& branch) override { return read(branch); }
        const std::function<bool(TCTreeBranch&)>& read;
    } reader(read);
    const std::string bytes = Tree().Branch(0, children).GetBytes();
    TCMessageBuffer buffer;
    buffer.Append(bytes.data(), bytes.size());
    return reader.Load(&buffer);
}

bool ReadFrom(TIMarshalable& object, const Tree& children) {
    return ReadFrom([&object](TCTreeBranch& branch) { return object.TreeToClass(branch); }, children);
}

bool WriteToRefusingBranch(TIMarshalable& object) {
    return ReadFrom([&object](TCTreeBranch& branch) { return object.ClassToTree(branch); }, Tree());
}
