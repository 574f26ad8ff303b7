#include <climits>
#include <cstring>
#include <memory>

#include <norvex/core/TreeNode.h>

#include "BranchView.h"
#include "NodeState.h"

namespace {

const unsigned char* GetContent(const NodeState& node) {
    return node.kind == wire::NodeKind::Branch ? static_cast<const BranchState&>(node).GetContent() : node.data;
}

std::size_t GetContentSize(const NodeState& node) {
    return node.kind == wire::NodeKind::Branch ? static_cast<const BranchState&>(node).GetContentSize() : node.size;
}

// A leaf's copy of its content follows its state.
struct LeafState : NodeState {
    std::unique_ptr<unsigned char[]> copy;
};

} // namespace

TCTreeNode::TCTreeNode(void* state) : m_pState(state) {}

TCTreeNode::~TCTreeNode() = default;

int TCTreeNode::GetTag() const {
    return GetNodeState(*this).tag;
}

int TCTreeNode::GetSize() const {
    const std::size_t size = GetContentSize(GetNodeState(*this));
    return size > INT_MAX ? INT_MAX : static_cast<int>(size);
}

int TCTreeNode::GetElementCount(int elementSize) const {
    return elementSize < 1 ? 0 : GetSize() / elementSize;
}

bool TCTreeNode::CopyTo(void* destination, int byteCount) const {
    const NodeState& node = GetNodeState(*this);
    if (byteCount < 0 || static_cast<std::size_t>(byteCount) > GetContentSize(node))
        return false;
    if (byteCount > 0)
        std::memcpy(destination, GetContent(node), static_cast<std::size_t>(byteCount));
    return true;
}

TCTreeLeafVar::TCTreeLeafVar(int tag, int size, const void* data) : TCTreeNode(nullptr) {
    auto state = std::make_unique<LeafState>();
    state->kind = wire::NodeKind::Array;
    state->tag = tag;
    state->isOwnedByTaker = true;
    if (size > 0 && data != nullptr) {
        state->size = static_cast<std::size_t>(size);
        state->copy = std::make_unique_for_overwrite<unsigned char[]>(state->size);
        std::memcpy(state->copy.get(), data, state->size);
        state->data = state->copy.get();
    }
    m_pState = static_cast<NodeState*>(state.release());
}

TCTreeLeafVar::~TCTreeLeafVar() {
    delete static_cast<LeafState*>(static_cast<NodeState*>(m_pState));
}
