#pragma once

#include <memory>

#include <norvex/core/TreeBranch.h>
#include <wire/Buffer.h>
#include <wire/Tree.h>

#include "NodeState.h"

class BranchView;

// A branch is either being written, at the end of a buffer, or read, from bytes that stay valid.
struct BranchState : NodeState {
    BranchState();
    ~BranchState();

    // Writing. The content is the buffer from `contentBegin` on.
    wire::Buffer* buffer = nullptr;
    std::size_t contentBegin = 0;
    int childCount = 0;
    int depth = 0;
    // A child branch is being written; nothing else may be appended meanwhile.
    bool isChildOpen = false;

    // Reading. Every node before `place` has a tag of at most `highestTag`, so that tags asked for
    // in ascending order are each found where the last one ended.
    const unsigned char* place = nullptr;
    int highestTag = kNoTag;
    // For GetFirstChild and GetNextChild: their position, and the node that they return.
    const unsigned char* nextChild = nullptr;
    std::unique_ptr<BranchView> child;

    static constexpr int kNoTag = -0x10000;

    // Starts reading the content of `node`.
    void Read(const wire::Node& node);
    // The first child with that tag. Constant time for tags in ascending order.
    bool Find(int tag, wire::Node& node);
    // Appends a leaf. False if the branch is not being written or the message has reached its
    // limit.
    bool AppendLeaf(int childTag, wire::NodeKind childKind, const void* content, std::size_t contentSize);

    const unsigned char* GetContent() const { return buffer != nullptr ? buffer->GetData() + contentBegin : data; }
    std::size_t GetContentSize() const { return buffer != nullptr ? buffer->GetSize() - contentBegin : size; }
};

// The branches that this library returns, mostly on its own stack.
class BranchView final : public TCTreeBranch {
public:
    // For reading the content of `node`, a view of well-formed bytes that outlive it.
    explicit BranchView(const wire::Node& node);
    // For writing into `buffer`, to whose end the branch's header is added by the caller. Children
    // are refused below `depth` wire::kMaxDepth.
    BranchView(wire::Buffer& buffer, int depth);

    BranchState& GetState() { return m_branch; }

private:
    BranchState m_branch;
};

// The state behind any branch.
BranchState& GetBranchState(TCTreeBranch& branch);
// The state behind any node.
const NodeState& GetNodeState(const TCTreeNode& node);
