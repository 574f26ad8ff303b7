#include <norvex/client/ServiceData.h>

#include <new>

#include <norvex/core/ClassToTreeFormatter.h>

#include "ServiceFields.h"

// A field and the table of fields are what the record's block holds, by the names that callers know
// them by.

const void* TCServiceField::GetData() const {
    const auto& field = *reinterpret_cast<const ServiceFields::Field*>(this);
    return field.size != 0 ? &field.value : nullptr;
}

const TCServiceField* TCServiceFieldTable::Find(int tag) const {
    for (const ServiceFields::Field& field : *reinterpret_cast<const ServiceFields*>(this)) {
        if (field.tag == tag)
            return reinterpret_cast<const TCServiceField*>(&field);
    }
    return nullptr;
}

TCServiceData::TCServiceData() = default;

TCServiceData::~TCServiceData() {
    ::operator delete(m_pState);
}

const TCServiceFieldTable* TCServiceData::GetFieldTable() const {
    return static_cast<const TCServiceFieldTable*>(m_pState);
}

bool TCServiceData::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    if (m_pState != nullptr) {
        for (ServiceFields::Field field : *static_cast<const ServiceFields*>(m_pState))
            formatter.PushValue(static_cast<short>(field.tag), field.size, &field.value);
    }
    return formatter.Extract();
}

bool TCServiceData::TreeToClass(TCTreeBranch& branch) {
    const std::size_t count = ServiceFields::Count(branch);
    void* memory = ::operator new(ServiceFields::GetBlockSize(count));
    ServiceFields* fields = ServiceFields::Read(branch, count, memory);
    if (fields == nullptr) {
        ::operator delete(memory);
        return false;
    }
    ::operator delete(m_pState);
    m_pState = fields;
    return true;
}
