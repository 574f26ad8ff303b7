#pragma once

#include <string>

#include <norvex/core/Marshalable.h>
#include <norvex/core/TreeBranch.h>
#include <values/Layout.h>

// Passes the nodes in `content` to the marshalling library. False if there are too many.
bool AppendNodes(const wire::Node& content, TCTreeBranch& branch);

// Writes an object's fields according to the description of its value.
template <class T> bool WriteValue(TCTreeBranch& branch, const T& value) {
    wire::Buffer bytes;
    wire::TreeWriter tree(bytes);
    values::WriteArgument(tree, 0, value);
    wire::Node node;
    return wire::NodeCursor(bytes.GetData(), bytes.GetSize()).Next(node) && AppendNodes(node, branch);
}

// Reads them; a missing field stays unchanged. False, with `value` unchanged, if one does not
// match.
template <class T> bool ReadValue(const TCTreeBranch& branch, T& value) {
    std::string bytes(static_cast<std::size_t>(branch.GetSize()), '\0');
    if (!branch.CopyTo(bytes.data(), branch.GetSize()))
        return false;
    wire::Node content;
    content.kind = wire::NodeKind::Branch;
    content.data = reinterpret_cast<const unsigned char*>(bytes.data());
    content.size = static_cast<std::uint32_t>(bytes.size());
    T read = value;
    if (!values::ReadArgument(content, read, values::Missing::Kept))
        return false;
    value = std::move(read);
    return true;
}

// Marshals a value as an argument. Refers to the caller's value during a call.
template <class T> class MarshalableValue final : public TCMarshalable {
public:
    // A const value is only written.
    explicit MarshalableValue(const T& value) : m_value(const_cast<T&>(value)) {}

    bool ClassToTree(TCTreeBranch& branch) override { return WriteValue(branch, m_value); }
    bool TreeToClass(TCTreeBranch& branch) override { return ReadValue(branch, m_value); }

private:
    T& m_value;
};
