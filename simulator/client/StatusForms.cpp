#include "StatusForms.h"

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "ArrayChild.h"
#include "MarshalableText.h"

bool PipelineForm::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    formatter.PushValue(0, sizeof handle.profile, &handle.profile);
    formatter.PushValue(1, sizeof handle.screenId, &handle.screenId);
    formatter.PushArray(2, static_cast<int>(times.size()), sizeof(EventTime), times.data());
    return formatter.Extract();
}

bool PipelineForm::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    formatter.PushValue(0, sizeof handle.profile, &handle.profile);
    formatter.PushValue(1, sizeof handle.screenId, &handle.screenId);
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        if (node->GetTag() == 2 && !ReadElements(*node, times))
            return false;
    }
    return formatter.FillOut();
}

bool EntryForm::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    MarshalableText marshalledText(text);
    formatter.PushValue(0, sizeof handle.profile, &handle.profile);
    formatter.PushValue(1, sizeof handle.screenId, &handle.screenId);
    formatter.PushMarshalableClass(2, &marshalledText);
    return formatter.Extract();
}

bool EntryForm::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    MarshalableText marshalledText(text);
    formatter.PushValue(0, sizeof handle.profile, &handle.profile);
    formatter.PushValue(1, sizeof handle.screenId, &handle.screenId);
    formatter.PushMarshalableClass(2, &marshalledText);
    return formatter.FillOut();
}

template <class ArgumentType> bool FormList<ArgumentType>::ClassToTree(TCTreeBranch& branch) {
    TCMarshalableNodeCreator creator;
    for (ArgumentType& element : elements) {
        if (!branch.AppendChild(creator.CreateNode(&element, sizeof element, -1, 1)))
            return false;
    }
    return true;
}

template <class ArgumentType> bool FormList<ArgumentType>::TreeToClass(TCTreeBranch& branch) {
    TCMarshalableNodeCreator creator;
    elements.clear();
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        ArgumentType& element = elements.emplace_back();
        if (!creator.FillElement(&element, sizeof element, sizeof element, node))
            return false;
    }
    return true;
}

template class FormList<PipelineForm>;
template class FormList<EntryForm>;
