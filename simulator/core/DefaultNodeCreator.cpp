#include <norvex/core/NodeCreator.h>
#include <wire/Message.h>

#include "KeptNode.h"

namespace {

constexpr int kPlainElements = 0;

} // namespace

DefaultNodeCreator::DefaultNodeCreator() : m_pState(new KeptNode) {}

DefaultNodeCreator::~DefaultNodeCreator() {
    delete &GetKept(m_pState);
}

int DefaultNodeCreator::GetKind() {
    return kPlainElements;
}

// A reader fills one element from one node: a received count never determines how much is copied.
bool DefaultNodeCreator::HasElementCount() {
    return false;
}

void DefaultNodeCreator::ReleaseElement(void*) {
    // Nothing: plain values own nothing.
}

TCTreeNode* DefaultNodeCreator::CreateNode(void* element, int elementSize, int tag, int count) {
    if (element == nullptr || elementSize < 1 || count < 1 ||
        static_cast<long long>(elementSize) * count > wire::kMaxTreeSize)
        return nullptr;
    KeptNode& kept = GetKept(m_pState);
    kept.bytes.Clear();
    kept.bytes.Append(element, static_cast<std::size_t>(elementSize) * static_cast<unsigned>(count));
    return kept.Show(tag, wire::NodeKind::Array, 0);
}

bool DefaultNodeCreator::FillElement(void* element, int, int byteCount, TCTreeNode* node) {
    return element != nullptr && node != nullptr && GetNodeState(*node).kind == wire::NodeKind::Array &&
           node->GetSize() == byteCount && node->CopyTo(element, byteCount);
}
