#include "FakeTree.h"

#include <cstdio>
#include <cstring>

#include "FakeTreeNodes.h"

namespace {

// Reaches the protected pointer of any node.
struct Opener : TCTreeNode {
    static void* stateOf(const TCTreeNode& node) { return node.*(&Opener::m_pState); }
};

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        char digits[3];
        static_cast<void>(
            std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(c) & 0xffU));
        text += digits;
    }
    return text;
}

std::string quoted(const std::string& bytes) {
    std::string text = "\"";
    for (const char c : bytes) {
        if (c >= ' ' && c != '"' && c != '\\' && c != 0x7f)
            text += c;
        else
            text += "\\x" + hex(std::string(1, c));
    }
    return text + "\"";
}

std::string content(const FakeNodeState& node) {
    switch (node.kind) {
    case FakeNodeState::Kind::Value:
        return "value " + hex(node.bytes);
    case FakeNodeState::Kind::Array:
        return "array(" + std::to_string(node.elementSize) + ") " + hex(node.bytes);
    case FakeNodeState::Kind::LengthArray:
        return "bytes " + quoted(node.bytes);
    case FakeNodeState::Kind::Var:
        return "var " + hex(node.bytes);
    case FakeNodeState::Kind::Branch:
        break;
    }
    std::string text = "{";
    for (const TCTreeNode* child : node.children) {
        const FakeNodeState& state = FakeNodeState::of(*child);
        text += (text.size() > 1 ? ", " : "") + std::to_string(state.tag) + "=" + content(state);
    }
    return text + "}";
}

} // namespace

FakeNodeState& FakeNodeState::of(const TCTreeNode& node) {
    return *static_cast<FakeNodeState*>(Opener::stateOf(node));
}

FakeLeaf::FakeLeaf(FakeNodeState::Kind kind, int tag, int elementSize, const void* data,
                   std::size_t size)
    : TCTreeNode(new FakeNodeState{tag,
                                   kind,
                                   elementSize,
                                   std::string(static_cast<const char*>(data), size),
                                   {},
                                   0,
                                   false}) {}

FakeBranch::FakeBranch(int tag)
    : TCTreeBranch(
          new FakeNodeState{tag, FakeNodeState::Kind::Branch, 1, std::string(), {}, 0, false}) {}

FakeBranch& FakeBranch::value(int tag, const std::string& bytes) {
    AppendChild(new FakeLeaf(FakeNodeState::Kind::Value, tag, 1, bytes.data(), bytes.size()));
    return *this;
}

FakeBranch& FakeBranch::bytes(int tag, const std::string& bytes) {
    AppendChild(new FakeLeaf(FakeNodeState::Kind::LengthArray, tag, 1, bytes.data(), bytes.size()));
    return *this;
}

FakeBranch& FakeBranch::branch(int tag, FakeBranch* child) {
    FakeNodeState::of(*child).tag = tag;
    AppendChild(child);
    return *this;
}

FakeBranch& FakeBranch::text(int tag, const std::string& text) {
    FakeBranch* child = new FakeBranch;
    child->becomeText(text);
    return branch(tag, child);
}

FakeBranch& FakeBranch::item(const std::string& name, bool state, unsigned int id) {
    FakeBranch* child = new FakeBranch;
    child->becomeItem(name, state, id);
    return branch(-1, child);
}

FakeBranch& FakeBranch::becomeText(const std::string& text) {
    value(0, FakeTree::raw(static_cast<int>(text.size())));
    if (!text.empty())
        bytes(1, text);
    return *this;
}

FakeBranch& FakeBranch::becomeItem(const std::string& name, bool state, unsigned int id) {
    return text(0, name).value(1, FakeTree::raw(state)).value(2, FakeTree::raw(id));
}

FakeBranch& FakeBranch::refuse() {
    FakeNodeState::of(*this).refuses = true;
    return *this;
}

std::string FakeTree::describe(const TCTreeNode& node) {
    return content(FakeNodeState::of(node));
}

// The library's own nodes.

TCTreeNode::TCTreeNode(void* state) : m_pState(state) {}

TCTreeNode::~TCTreeNode() {
    FakeNodeState* state = static_cast<FakeNodeState*>(m_pState);
    for (TCTreeNode* child : state->children)
        delete child;
    delete state;
}

int TCTreeNode::GetTag() const {
    return FakeNodeState::of(*this).tag;
}

// A branch is as long as what it holds.
int TCTreeNode::GetSize() const {
    const FakeNodeState& state = FakeNodeState::of(*this);
    int size = static_cast<int>(state.bytes.size());
    for (const TCTreeNode* child : state.children)
        size += child->GetSize();
    return size;
}

int TCTreeNode::GetElementCount(int elementSize) const {
    return elementSize < 1 ? 0 : GetSize() / elementSize;
}

bool TCTreeNode::CopyTo(void* destination, int byteCount) const {
    const std::string& bytes = FakeNodeState::of(*this).bytes;
    if (byteCount < 0 || static_cast<std::size_t>(byteCount) > bytes.size())
        return false;
    std::memcpy(destination, bytes.data(), static_cast<std::size_t>(byteCount));
    return true;
}

TCTreeLeafVar::TCTreeLeafVar(int tag, int size, const void* data)
    : TCTreeNode(new FakeNodeState{
          tag,
          FakeNodeState::Kind::Var,
          1,
          std::string(static_cast<const char*>(data), static_cast<std::size_t>(size)),
          {},
          0,
          false}) {}

TCTreeLeafVar::~TCTreeLeafVar() = default;

TCTreeBranch::TCTreeBranch(void* state) : TCTreeNode(state) {}

TCTreeBranch::~TCTreeBranch() = default;

bool TCTreeBranch::AppendChild(TCTreeNode* child) {
    FakeNodeState& state = FakeNodeState::of(*this);
    FakeNodeState& childState = FakeNodeState::of(*child);
    if (childState.tag == -1)
        childState.tag = static_cast<int>(state.children.size());
    state.children.push_back(child);
    return true;
}

TCTreeNode* TCTreeBranch::GetFirstChild() {
    FakeNodeState::of(*this).next = 0;
    return GetNextChild();
}

TCTreeNode* TCTreeBranch::GetNextChild() {
    FakeNodeState& state = FakeNodeState::of(*this);
    return state.next < state.children.size() ? state.children[state.next++] : nullptr;
}
