#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/LengthInfoContainer.h>
#include <norvex/core/Marshalable.h>
#include <wire/Message.h>

#include "FormatterState.h"
#include "ObjectTree.h"

namespace {

// Whether `count` elements of `elementSize` bytes at `data` can be a leaf's content.
bool IsContent(int count, int elementSize, const void* data) {
    if (count < 0 || elementSize < 0)
        return false;
    const long long size = static_cast<long long>(count) * elementSize;
    return size <= wire::kMaxTreeSize && (data != nullptr || size == 0);
}

} // namespace

TCClassToTreeFormatter::TCClassToTreeFormatter(TCTreeBranch& branch) : m_pState(FormatterState::For(branch)) {}

TCClassToTreeFormatter::~TCClassToTreeFormatter() = default;

bool TCClassToTreeFormatter::PushValue(short tag, int size, void* data) {
    FormatterState state(m_pState);
    return state.Note(IsContent(1, size, data) &&
                      state.GetBranch().AppendLeaf(tag, wire::NodeKind::Value, data, static_cast<std::size_t>(size)));
}

bool TCClassToTreeFormatter::PushArray(short tag, int count, int elementSize, void* data) {
    FormatterState state(m_pState);
    if (!IsContent(count, elementSize, data))
        return state.Note(false);
    const std::size_t size = static_cast<std::size_t>(count) * static_cast<std::size_t>(elementSize);
    return state.Note(state.GetBranch().AppendLeaf(tag, wire::NodeKind::Array, data, size));
}

bool TCClassToTreeFormatter::PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) {
    if (info != nullptr)
        info->SetLength(count);
    return PushArray(tag, count, 1, data);
}

bool TCClassToTreeFormatter::PushMarshalableClass(short tag, TIMarshalable* object) {
    FormatterState state(m_pState);
    BranchState& branch = state.GetBranch();
    if (object == nullptr || branch.buffer == nullptr || branch.isChildOpen)
        return state.Note(false);
    branch.isChildOpen = true;
    const bool written = WriteObject(*object, tag, wire::Direction::Out, branch.depth, *branch.buffer);
    branch.isChildOpen = false;
    branch.childCount += written ? 1 : 0;
    return state.Note(written);
}

bool TCClassToTreeFormatter::Extract() {
    return !FormatterState(m_pState).HasFailed();
}
