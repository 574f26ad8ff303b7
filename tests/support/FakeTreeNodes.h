#pragma once

#include <string>
#include <vector>

#include <norvex/core/TreeNode.h>

// What a fake node's opaque pointer points to.
struct FakeNodeState {
    enum class Kind { Value, Array, LengthArray, Var, Branch };

    int tag = -1;
    Kind kind = Kind::Branch;
    int elementSize = 1;
    std::string bytes;
    std::vector<TCTreeNode*> children;
    std::size_t next = 0;
    bool refuses = false;

    // The state of any node, also one that the test did not make.
    static FakeNodeState& of(const TCTreeNode& node);
};

// A leaf that a formatter makes.
class FakeLeaf : public TCTreeNode {
public:
    FakeLeaf(FakeNodeState::Kind kind, int tag, int elementSize, const void* data,
             std::size_t size);
};
