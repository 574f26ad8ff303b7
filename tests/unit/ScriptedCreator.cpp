#include "ScriptedCreator.h"

#include <zarn/MenuItem.h>

#include "FakeTree.h"

namespace {

std::string nameOf(void* element) {
    return static_cast<TSMenuItem*>(element)->getName();
}

// The size of an element is the compiler's affair; what matters is which multiple of it is given.
std::string elements(int bytes) {
    const int size = sizeof(TSMenuItem);
    return bytes % size == 0 ? std::to_string(bytes / size) + " item"
                             : std::to_string(bytes) + " bytes";
}

} // namespace

ScriptedCreator::ScriptedCreator(Script& script) : m_script(script) {}

ScriptedCreator::~ScriptedCreator() {
    m_script.notes.push_back("deleted");
}

int ScriptedCreator::GetKind() {
    m_script.notes.push_back("kind");
    return m_script.kind;
}

bool ScriptedCreator::HasElementCount() {
    return m_script.counted;
}

void ScriptedCreator::ReleaseElement(void* element) {
    m_script.notes.push_back("release " + nameOf(element));
}

TCTreeNode* ScriptedCreator::CreateNode(void* element, int elementSize, int tag, int count) {
    m_script.notes.push_back("create " + nameOf(element) + ", " + elements(elementSize) + ", " +
                             std::to_string(tag) + ", " + std::to_string(count));
    if (m_script.noNodeFor.contains(nameOf(element)))
        return nullptr;
    FakeBranch* node = new FakeBranch(tag);
    node->becomeText(nameOf(element));
    return node;
}

bool ScriptedCreator::FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) {
    m_script.notes.push_back("fill " + elements(elementSize) + ", " + elements(byteCount) + ", " +
                             FakeTree::describe(*node));
    static_cast<TSMenuItem*>(element)->setID(static_cast<unsigned int>(m_script.notes.size()));
    return m_script.fills;
}
