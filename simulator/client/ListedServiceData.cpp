#include "ListedServiceData.h"

#include "ServiceFields.h"

static_assert(sizeof(ListedServiceData) % alignof(ServiceFields) == 0);

TCServiceData* ListedServiceData::Make(TCTreeBranch& branch) {
    const std::size_t count = ServiceFields::Count(branch);
    void* memory = ::operator new(sizeof(ListedServiceData) + ServiceFields::GetBlockSize(count));
    auto* record = new (memory) ListedServiceData;
    record->m_pState = ServiceFields::Read(branch, count, record->GetBlock());
    if (record->m_pState == nullptr) {
        delete record;
        return nullptr;
    }
    return record;
}

ListedServiceData::~ListedServiceData() {
    if (m_pState == GetBlock())
        m_pState = nullptr;
}

// Read into again, it becomes a record like any other.
bool ListedServiceData::TreeToClass(TCTreeBranch& branch) {
    if (m_pState == GetBlock())
        m_pState = nullptr;
    return TCServiceData::TreeToClass(branch);
}
