#include "MarshalableServiceRecords.h"

#include <norvex/core/TreeBranch.h>

#include "ListedServiceData.h"

bool MarshalableServiceRecords::TreeToClass(TCTreeBranch& branch) {
    std::list<TCServiceData*> arrived;
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        // Every child that this library's reader hands out is a branch; a leaf's has no children.
        TCServiceData* record = ListedServiceData::Make(static_cast<TCTreeBranch&>(*node));
        if (record == nullptr) {
            for (TCServiceData* made : arrived)
                delete made;
            return false;
        }
        arrived.push_back(record);
    }
    m_records.splice(m_records.end(), arrived);
    return true;
}

int MarshalableServiceRecords::GetMarshalableStorageType() {
    return 1;
}
