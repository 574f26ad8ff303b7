#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/TreeNode.h>

// A node with ordered children. Only the library creates one; a class that is marshalled gets it
// passed in.
class NORVEX_API TCTreeBranch : public TCTreeNode {
public:
    ~TCTreeBranch() override;

    // Appends `child` and takes ownership: the caller neither uses nor deletes it afterwards. False
    // when the branch cannot take it (it is being read, or the message has reached its limit).
    bool AppendChild(TCTreeNode* child);
    // The first child, then the next ones; null when there is none (left). The branch owns the
    // result, which is valid until the next of these calls.
    TCTreeNode* GetFirstChild();
    TCTreeNode* GetNextChild();

protected:
    explicit TCTreeBranch(void* state);
};
