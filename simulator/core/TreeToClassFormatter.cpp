#include <norvex/core/LengthInfoContainer.h>
#include <norvex/core/Marshalable.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "FormatterState.h"
#include "ObjectTree.h"

namespace {

// Copies a leaf of exactly that kind and size; false, without copying, for any other.
bool CopyLeaf(const wire::Node& node, wire::NodeKind kind, long long size, void* data) {
    if (node.kind != kind || size != node.size || (data == nullptr && size > 0))
        return false;
    wire::CopyContent(data, node.data, node.size);
    return true;
}

} // namespace

TCTreeToClassFormatter::TCTreeToClassFormatter(TCTreeBranch& branch) : m_pState(FormatterState::For(branch)) {}

TCTreeToClassFormatter::~TCTreeToClassFormatter() = default;

bool TCTreeToClassFormatter::PushValue(short tag, int size, void* data) {
    FormatterState state(m_pState);
    wire::Node node;
    return !state.GetBranch().Find(tag, node) || state.Note(CopyLeaf(node, wire::NodeKind::Value, size, data));
}

bool TCTreeToClassFormatter::PushArray(short tag, int count, int elementSize, void* data) {
    FormatterState state(m_pState);
    wire::Node node;
    if (!state.GetBranch().Find(tag, node))
        return true;
    const bool isSize = count >= 0 && elementSize >= 0;
    return state.Note(isSize &&
                      CopyLeaf(node, wire::NodeKind::Array, static_cast<long long>(count) * elementSize, data));
}

bool TCTreeToClassFormatter::PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) {
    const int length = info != nullptr ? info->GetLength() : count;
    if (length > count)
        return FormatterState(m_pState).Note(false);
    return PushArray(tag, length, 1, data);
}

bool TCTreeToClassFormatter::PushMarshalableClass(short tag, TIMarshalable* object) {
    FormatterState state(m_pState);
    wire::Node node;
    if (!state.GetBranch().Find(tag, node))
        return true;
    return state.Note(object != nullptr && ReadObject(node, *object));
}

bool TCTreeToClassFormatter::FillOut() {
    return !FormatterState(m_pState).HasFailed();
}
