#pragma once

#include <string>

#include <norvex/core/TreeBranch.h>

// A branch for tests: filled by hand, or by what is tested, and compared as text. The fake trees
// are plain nodes in the heap and share nothing with a real marshalling library.
class FakeBranch : public TCTreeBranch {
public:
    explicit FakeBranch(int tag = -1);

    // Children in order.
    FakeBranch& value(int tag, const std::string& bytes);
    FakeBranch& bytes(int tag, const std::string& bytes);
    // Takes `child` over.
    FakeBranch& branch(int tag, FakeBranch* child);
    // The form in which a text travels: its length as child 0, its bytes as child 1.
    FakeBranch& text(int tag, const std::string& text);
    // The form in which a menu item travels, as the next child.
    FakeBranch& item(const std::string& name, bool state, unsigned int id);

    // Fills itself with a text's two children.
    FakeBranch& becomeText(const std::string& text);
    // The three children of a menu item.
    FakeBranch& becomeItem(const std::string& name, bool state, unsigned int id);

    // Readings of it end in failure from now on: what a formatter built over it answers at its end.
    FakeBranch& refuse();
};

namespace FakeTree {

// The bytes of a plain value.
template <typename Value> std::string raw(Value value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

// The node as text. A value: "0=value 03000000" (its bytes in hexadecimal); a length array:
// "1=bytes
// \"abc\""; an array with its element size: "1=array(4) ..."; a leaf of any length: "0=var 0102"; a
// branch: "0={...}". The outermost branch has no tag: "{0=value 01, 1=value 05000000}".
std::string describe(const TCTreeNode& node);

} // namespace FakeTree
