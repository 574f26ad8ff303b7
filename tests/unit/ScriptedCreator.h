#pragma once

#include <set>
#include <string>
#include <vector>

#include <norvex/core/NodeCreator.h>

// A node creator that notes what it is asked, in order. Elements are menu items; in the notes they
// are called by their names.
class ScriptedCreator : public TINodeCreator {
public:
    // Shared with the test, which outlives the creator.
    struct Script {
        int kind = 1;
        bool counted = false;
        // Items of these names get no node.
        std::set<std::string> noNodeFor;
        bool fills = true;
        std::vector<std::string> notes;
    };

    explicit ScriptedCreator(Script& script);
    ~ScriptedCreator() override;

    int GetKind() override;
    bool HasElementCount() override;
    void ReleaseElement(void* element) override;
    TCTreeNode* CreateNode(void* element, int elementSize, int tag, int count) override;
    bool FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) override;

private:
    Script& m_script;
};
