#include "ServiceFields.h"

#include <new>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/core/TreeBranch.h>

namespace {

int GetValueSize(int tag) {
    return tag == SERVICE_FIELD_ID ? 8 : 4;
}

} // namespace

std::size_t ServiceFields::Count(TCTreeBranch& branch) {
    std::size_t count = 0;
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild())
        ++count;
    return count;
}

std::size_t ServiceFields::GetBlockSize(std::size_t count) {
    return sizeof(ServiceFields) + count * sizeof(Field);
}

ServiceFields* ServiceFields::Read(TCTreeBranch& branch, std::size_t count, void* memory) {
    auto* fields = new (memory) ServiceFields(count);
    auto* place = reinterpret_cast<Field*>(fields + 1);
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        auto* field = new (place++) Field{node->GetTag(), node->GetSize(), {0}};
        if (field->size != 0 && field->size != GetValueSize(field->tag))
            return nullptr;
        node->CopyTo(&field->value, field->size);
    }
    return fields;
}
