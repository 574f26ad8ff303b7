#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/TreeNode.h>

// A node with children, in an order. Made by the library alone: whoever marshals a class is handed
// one.
class NORVEX_API TCTreeBranch : public TCTreeNode {
public:
    ~TCTreeBranch() override;

    // Adds `child` as the last child and takes it over: the caller neither uses nor deletes it
    // afterwards. False when the branch cannot take it (it is one that is read, or the message has
    // reached its limit).
    bool AppendChild(TCTreeNode* child);
    // First child, and then one after the other; null when there is none (left). The branch owns
    // what it hands out, and it is valid until the next of these calls.
    TCTreeNode* GetFirstChild();
    TCTreeNode* GetNextChild();

protected:
    explicit TCTreeBranch(void* state);
};
