#include <norvex/core/Marshalable.h>
#include <norvex/core/NodeCreator.h>

#include "KeptNode.h"
#include "ObjectTree.h"

namespace {

constexpr int kMarshalableElements = 1;

} // namespace

TCMarshalableNodeCreator::TCMarshalableNodeCreator() : m_pState(new KeptNode) {}

TCMarshalableNodeCreator::~TCMarshalableNodeCreator() {
    delete &GetKept(m_pState);
}

int TCMarshalableNodeCreator::GetKind() {
    return kMarshalableElements;
}

bool TCMarshalableNodeCreator::HasElementCount() {
    return false;
}

void TCMarshalableNodeCreator::ReleaseElement(void*) {
    // Nothing: elements of this kind own what they hold.
}

TCTreeNode* TCMarshalableNodeCreator::CreateNode(void* element, int, int tag, int count) {
    if (element == nullptr || count != 1)
        return nullptr;
    KeptNode& kept = GetKept(m_pState);
    kept.bytes.Clear();
    auto& object = *static_cast<TIMarshalable*>(element);
    if (!WriteObject(object, 0, wire::Direction::Out, 0, kept.bytes))
        return nullptr;
    return kept.Show(tag, wire::NodeKind::Branch, wire::kNodeHeaderSize);
}

bool TCMarshalableNodeCreator::FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) {
    if (element == nullptr || node == nullptr || byteCount != elementSize)
        return false;
    const NodeState& state = GetNodeState(*node);
    wire::Node view;
    view.kind = state.kind;
    view.data = state.data;
    view.size = static_cast<std::uint32_t>(state.size);
    return ReadObject(view, *static_cast<TIMarshalable*>(element));
}
