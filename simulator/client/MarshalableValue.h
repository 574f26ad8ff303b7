#pragma once

#include <string>

#include <norvex/core/Marshalable.h>
#include <norvex/core/TreeBranch.h>
#include <values/Layout.h>

// Hands the nodes within `content` to the marshalling library. False when they are too many.
bool AppendNodes(const wire::Node& content, TCTreeBranch& branch);

// Writes an object's fields, as the description of its value tells.
template <class T> bool WriteValue(TCTreeBranch& branch, const T& value) {
    wire::Buffer bytes;
    wire::TreeWriter tree(bytes);
    values::WriteArgument(tree, 0, value);
    wire::Node node;
    return wire::NodeCursor(bytes.GetData(), bytes.GetSize()).Next(node) &&
           AppendNodes(node, branch);
}

// Reads them; a field that is not there stays as it was. False, and `value` untouched, when one
// does not fit.
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

// Lets a value travel as an argument; made around the caller's for the length of a call.
template <class T> class MarshalableValue final : public TCMarshalable {
public:
    // A const value is only ever written.
    explicit MarshalableValue(const T& value) : m_value(const_cast<T&>(value)) {}

    bool ClassToTree(TCTreeBranch& branch) override { return WriteValue(branch, m_value); }
    bool TreeToClass(TCTreeBranch& branch) override { return ReadValue(branch, m_value); }

private:
    T& m_value;
};
