#include <norvex/core/Marshalable.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>
#include <wire/Tree.h>

#include "ObjectTree.h"

TIMarshalable::~TIMarshalable() = default;

TCMarshalable::TCMarshalable() : m_pState(nullptr) {}

// The state belongs to the object that created it.
TCMarshalable::TCMarshalable(const TCMarshalable&) : TIMarshalable(), m_pState(nullptr) {}

// cppcheck-suppress operatorEqVarError ; nothing is copied.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp): nothing is taken over.
TCMarshalable& TCMarshalable::operator=(const TCMarshalable&) {
    return *this;
}

TCMarshalable::~TCMarshalable() = default;

bool TCMarshalable::GetSizeOfMarshalled(unsigned long&) {
    return false;
}

bool TCMarshalable::ClassToTree(TCTreeBranch&) {
    return true;
}

bool TCMarshalable::TreeToClass(TCTreeBranch&) {
    return true;
}

int TCMarshalable::GetMarshalableStorageType() {
    return 0;
}

bool TCMarshalable::Store(TCMessageBuffer* buffer) {
    wire::Buffer tree;
    if (buffer == nullptr || !WriteObject(*this, 0, wire::Direction::Out, 0, tree))
        return false;
    buffer->Append(tree.GetData(), tree.GetSize());
    return true;
}

bool TCMarshalable::Load(TCMessageBuffer* buffer) {
    if (buffer == nullptr || !wire::IsWellFormed(buffer->GetData(), buffer->GetSize()))
        return false;
    wire::NodeCursor cursor(buffer->GetData(), buffer->GetSize());
    wire::Node node;
    return cursor.Next(node) && cursor.IsAtEnd() && ReadObject(node, *this);
}
