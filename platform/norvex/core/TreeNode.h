#pragma once

#include <norvex/core/Export.h>

// A node of an argument tree.
class NORVEX_API TCTreeNode {
public:
    virtual ~TCTreeNode();
    TCTreeNode(const TCTreeNode&) = delete;
    TCTreeNode& operator=(const TCTreeNode&) = delete;

    // The number by which a reader finds it among its siblings.
    int GetTag() const;
    // Length of its content in bytes.
    int GetSize() const;
    // How many elements of `elementSize` bytes its content holds; 0 for a size below 1.
    int GetElementCount(int elementSize) const;
    // Copies the first `byteCount` bytes of its content. False, and nothing copied, when it holds
    // fewer.
    bool CopyTo(void* destination, int byteCount) const;

protected:
    explicit TCTreeNode(void* state);
    void* m_pState;
};

// A leaf that holds a copy of a content of any length.
class NORVEX_API TCTreeLeafVar : public TCTreeNode {
public:
    TCTreeLeafVar(int tag, int size, const void* data);
    ~TCTreeLeafVar() override;
};
