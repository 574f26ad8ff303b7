#include <cstring>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/LengthInfoContainer.h>
#include <norvex/core/Marshalable.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "FakeTree.h"
#include "FakeTreeNodes.h"

namespace {

// What a formatter's opaque pointer points to.
struct FormatterState {
    TCTreeBranch& branch;
    bool good;
};

FormatterState* newState(TCTreeBranch& branch) {
    return new FormatterState{branch, !FakeNodeState::of(branch).refuses};
}

FormatterState& stateOf(void* pointer) {
    return *static_cast<FormatterState*>(pointer);
}

TCTreeNode* findChild(TCTreeBranch& branch, int tag) {
    for (TCTreeNode* child : FakeNodeState::of(branch).children) {
        if (child->GetTag() == tag)
            return child;
    }
    return nullptr;
}

bool addLeaf(void* formatter, FakeNodeState::Kind kind, short tag, int elementSize, void* data,
             int size) {
    return stateOf(formatter).branch.AppendChild(
        new FakeLeaf(kind, tag, elementSize, data, static_cast<std::size_t>(size)));
}

// A missing child is no failure; one of another size is.
bool readLeaf(void* formatter, short tag, void* data, int size) {
    FormatterState& state = stateOf(formatter);
    const TCTreeNode* child = findChild(state.branch, tag);
    if (child == nullptr)
        return true;
    if (child->GetSize() != size || !child->CopyTo(data, size)) {
        state.good = false;
        return false;
    }
    return true;
}

} // namespace

TCTreeFormatter::TCTreeFormatter() = default;
TCTreeFormatter::~TCTreeFormatter() = default;

bool TCTreeFormatter::Extract() {
    return true;
}

bool TCTreeFormatter::FillOut() {
    return true;
}

TILengthInfoContainer::~TILengthInfoContainer() = default;

TCClassToTreeFormatter::TCClassToTreeFormatter(TCTreeBranch& branch) : m_pState(newState(branch)) {}

TCClassToTreeFormatter::~TCClassToTreeFormatter() {
    delete &stateOf(m_pState);
}

bool TCClassToTreeFormatter::PushValue(short tag, int size, void* data) {
    return addLeaf(m_pState, FakeNodeState::Kind::Value, tag, 1, data, size);
}

bool TCClassToTreeFormatter::PushArray(short tag, int count, int elementSize, void* data) {
    return addLeaf(m_pState, FakeNodeState::Kind::Array, tag, elementSize, data,
                   count * elementSize);
}

bool TCClassToTreeFormatter::PushLengthArray(short tag, int count, void* data,
                                             TILengthInfoContainer* info) {
    if (info != nullptr)
        info->SetLength(count);
    return addLeaf(m_pState, FakeNodeState::Kind::LengthArray, tag, 1, data, count);
}

bool TCClassToTreeFormatter::PushMarshalableClass(short tag, TIMarshalable* object) {
    FakeBranch* child = new FakeBranch(tag);
    stateOf(m_pState).branch.AppendChild(child);
    return object->ClassToTree(*child);
}

bool TCClassToTreeFormatter::Extract() {
    return stateOf(m_pState).good;
}

TCTreeToClassFormatter::TCTreeToClassFormatter(TCTreeBranch& branch) : m_pState(newState(branch)) {}

TCTreeToClassFormatter::~TCTreeToClassFormatter() {
    delete &stateOf(m_pState);
}

bool TCTreeToClassFormatter::PushValue(short tag, int size, void* data) {
    return readLeaf(m_pState, tag, data, size);
}

bool TCTreeToClassFormatter::PushArray(short tag, int count, int elementSize, void* data) {
    return readLeaf(m_pState, tag, data, count * elementSize);
}

bool TCTreeToClassFormatter::PushLengthArray(short tag, int count, void* data,
                                             TILengthInfoContainer* info) {
    if (info != nullptr)
        info->SetLength(count);
    return readLeaf(m_pState, tag, data, count);
}

bool TCTreeToClassFormatter::PushMarshalableClass(short tag, TIMarshalable* object) {
    FormatterState& state = stateOf(m_pState);
    TCTreeNode* child = findChild(state.branch, tag);
    if (child == nullptr)
        return true;
    if (FakeNodeState::of(*child).kind != FakeNodeState::Kind::Branch) {
        state.good = false;
        return false;
    }
    const bool read = object->TreeToClass(static_cast<TCTreeBranch&>(*child));
    state.good = state.good && read;
    return read;
}

bool TCTreeToClassFormatter::FillOut() {
    return stateOf(m_pState).good;
}

TINodeCreator::~TINodeCreator() = default;

TCMarshalableNodeCreator::TCMarshalableNodeCreator() : m_pState(nullptr) {
    static_cast<void>(m_pState);
}
TCMarshalableNodeCreator::~TCMarshalableNodeCreator() = default;

int TCMarshalableNodeCreator::GetKind() {
    return 1;
}

bool TCMarshalableNodeCreator::HasElementCount() {
    return false;
}

void TCMarshalableNodeCreator::ReleaseElement(void*) {}

TCTreeNode* TCMarshalableNodeCreator::CreateNode(void* element, int, int tag, int) {
    FakeBranch* node = new FakeBranch(tag);
    if (static_cast<TIMarshalable*>(element)->ClassToTree(*node))
        return node;
    delete node;
    return nullptr;
}

bool TCMarshalableNodeCreator::FillElement(void* element, int, int, TCTreeNode* node) {
    if (FakeNodeState::of(*node).kind != FakeNodeState::Kind::Branch)
        return false;
    return static_cast<TIMarshalable*>(element)->TreeToClass(static_cast<TCTreeBranch&>(*node));
}

DefaultNodeCreator::DefaultNodeCreator() : m_pState(nullptr) {
    static_cast<void>(m_pState);
}
DefaultNodeCreator::~DefaultNodeCreator() = default;

int DefaultNodeCreator::GetKind() {
    return 0;
}

bool DefaultNodeCreator::HasElementCount() {
    return true;
}

void DefaultNodeCreator::ReleaseElement(void*) {}

TCTreeNode* DefaultNodeCreator::CreateNode(void* element, int elementSize, int tag, int count) {
    return new TCTreeLeafVar(tag, elementSize * count, element);
}

bool DefaultNodeCreator::FillElement(void* element, int, int byteCount, TCTreeNode* node) {
    return node->CopyTo(element, byteCount);
}
