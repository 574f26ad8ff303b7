#include <cstdint>

#include <norvex/core/TreeBranch.h>

#include "BranchView.h"

namespace {

// Positions beyond the range of tags restart at 0; a container's reader relies on the order.
int TagOfPlace(int place) {
    return place & INT16_MAX;
}

TCTreeNode* HandOutNext(BranchState& branch) {
    const auto left = static_cast<std::size_t>(branch.data + branch.size - branch.nextChild);
    wire::NodeCursor cursor(branch.nextChild, left);
    wire::Node node;
    if (!cursor.Next(node))
        return nullptr;
    branch.nextChild = cursor.GetPlace();
    if (branch.child == nullptr)
        branch.child = std::make_unique<BranchView>(node);
    else
        branch.child->GetState().Read(node);
    return branch.child.get();
}

} // namespace

TCTreeBranch::TCTreeBranch(void* state) : TCTreeNode(state) {}

TCTreeBranch::~TCTreeBranch() = default;

bool TCTreeBranch::AppendChild(TCTreeNode* child) {
    if (child == nullptr || child == this)
        return false;
    BranchState& branch = GetBranchState(*this);
    const NodeState& node = GetNodeState(*child);
    const int tag = node.tag == -1 ? TagOfPlace(branch.childCount) : node.tag;
    // A branch that is still being written has no content to copy yet.
    const bool isWhole = node.kind != wire::NodeKind::Branch || static_cast<const BranchState&>(node).buffer == nullptr;
    const bool appended =
        isWhole && tag >= INT16_MIN && tag <= INT16_MAX && branch.AppendLeaf(tag, node.kind, node.data, node.size);
    if (node.isOwnedByTaker)
        delete child;
    return appended;
}

TCTreeNode* TCTreeBranch::GetFirstChild() {
    BranchState& branch = GetBranchState(*this);
    if (branch.kind != wire::NodeKind::Branch || branch.buffer != nullptr)
        return nullptr;
    branch.nextChild = branch.data;
    return HandOutNext(branch);
}

TCTreeNode* TCTreeBranch::GetNextChild() {
    BranchState& branch = GetBranchState(*this);
    return branch.nextChild != nullptr ? HandOutNext(branch) : nullptr;
}
