#pragma once

#include <type_traits>
#include <vector>

#include <norvex/core/TreeBranch.h>

// Reads the content of a node as whole elements; false, and `elements` untouched, when it does not
// divide into them. The elements' number comes from the node's own size.
template <class Vector> bool ReadElements(const TCTreeNode& node, Vector& elements) {
    using Element = typename Vector::value_type;
    static_assert(std::is_trivially_copyable_v<Element>);
    constexpr int kSize = sizeof(Element);
    if (node.GetSize() % kSize != 0)
        return false;
    elements.resize(static_cast<std::size_t>(node.GetElementCount(kSize)));
    return elements.empty() || node.CopyTo(elements.data(), node.GetSize());
}
