#include "BranchView.h"

#include <algorithm>

#include <wire/Message.h>

namespace {

// Accesses the opaque pointer that nodes keep for their library.
struct NodeAccess : TCTreeNode {
    static void* Get(const TCTreeNode& node) { return node.*&NodeAccess::m_pState; }
};

} // namespace

const NodeState& GetNodeState(const TCTreeNode& node) {
    return *static_cast<const NodeState*>(NodeAccess::Get(node));
}

BranchState& GetBranchState(TCTreeBranch& branch) {
    return *static_cast<BranchState*>(static_cast<NodeState*>(NodeAccess::Get(branch)));
}

BranchState::BranchState() {
    kind = wire::NodeKind::Branch;
}

BranchState::~BranchState() = default;

void BranchState::Read(const wire::Node& node) {
    kind = node.kind;
    tag = node.tag;
    data = node.data;
    size = node.size;
    place = data;
    highestTag = kNoTag;
    nextChild = nullptr;
}

bool BranchState::Find(int wanted, wire::Node& node) {
    if (buffer != nullptr)
        return false;
    // An earlier child can only have this tag if one of them has a tag at least as high.
    const bool onward = wanted > highestTag;
    const unsigned char* begin = onward ? place : data;
    wire::NodeCursor cursor(begin, static_cast<std::size_t>(data + size - begin));
    int highest = highestTag;
    while (cursor.Next(node)) {
        highest = std::max(highest, int{node.tag});
        if (node.tag == wanted) {
            if (onward) {
                place = cursor.GetPlace();
                highestTag = highest;
            }
            return true;
        }
    }
    return false;
}

bool BranchState::AppendLeaf(int childTag, wire::NodeKind childKind, const void* content, std::size_t contentSize) {
    if (buffer == nullptr || isChildOpen ||
        contentSize + wire::kNodeHeaderSize > wire::kMaxTreeSize - buffer->GetSize())
        return false;
    unsigned char* to = buffer->Extend(wire::kNodeHeaderSize + contentSize);
    wire::EncodeNodeHeader(to, static_cast<std::int16_t>(childTag), childKind, wire::Direction::Out,
                           static_cast<std::uint32_t>(contentSize));
    wire::CopyContent(to + wire::kNodeHeaderSize, content, contentSize);
    ++childCount;
    return true;
}

BranchView::BranchView(const wire::Node& node) : TCTreeBranch(nullptr) {
    m_pState = static_cast<NodeState*>(&m_branch);
    m_branch.Read(node);
}

BranchView::BranchView(wire::Buffer& buffer, int depth) : TCTreeBranch(nullptr) {
    m_pState = static_cast<NodeState*>(&m_branch);
    m_branch.buffer = &buffer;
    m_branch.contentBegin = buffer.GetSize();
    m_branch.depth = depth;
}
