#pragma once

#include <functional>
#include <string>

#include <norvex/core/Marshalable.h>
#include <norvex/core/TreeBranch.h>

// Argument trees: built by hand for the plug-in to read, and described as text when it has written
// them.
class Tree {
public:
    // Nodes in order, each under its tag.
    template <typename Number> Tree& Value(int tag, Number value) {
        return ValueBytes(tag, {reinterpret_cast<const char*>(&value), sizeof value});
    }
    Tree& ValueBytes(int tag, const std::string& bytes);
    Tree& Array(int tag, const std::string& bytes);
    Tree& Branch(int tag, const Tree& children);
    // A text: its length as child 0 and, unless it is empty, its bytes as child 1.
    Tree& Text(int tag, const std::string& text) { return Branch(tag, OfText(text)); }

    // The children of a text and of a menu item.
    static Tree OfText(const std::string& text);
    static Tree OfItem(const std::string& name, bool state, unsigned int id);

    const std::string& GetBytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

// The nodes as text. A value: "0=value 03000000" (its bytes in hexadecimal); an array: "1=bytes
// \"abc\""; a length: "2=length"; a branch: "0={0=value 01, 1=value 05000000}". With `directions`,
// "in" or "out" stands in place of the tags of the outermost nodes.
std::string Describe(const void* data, std::size_t size, bool directions = false);

// What `object` writes, described; "refused" if it could not be written.
std::string Written(TIMarshalable& object);
// Calls `read` with a branch that has these children; gives its answer.
bool ReadFrom(const std::function<bool(TCTreeBranch&)>& read, const Tree& children);
// Has `object` read itself from such a branch.
bool ReadFrom(TIMarshalable& object, const Tree& children);
// What `object` returns when it has to write itself to a branch that accepts nothing: one that is
// read.
bool WriteToRefusingBranch(TIMarshalable& object);
