#include <cstdint>
#include <new>

#include <norvex/client/ServiceData.h>
#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeBranch.h>
#include <values/ServiceFields.h>

#include "ServiceRecords.h"

namespace {

// The fields of one record, in the order in which they came. One block of memory holds them all: a
// list of a million records is asked for.
class FieldBlock {
public:
    struct Field {
        int tag;
        int size; // of the value; 0: the field has none
        union {
            std::uint64_t wide;
            std::int32_t number;
        } value;
    };

    static std::size_t Count(TCTreeBranch& branch) {
        std::size_t count = 0;
        for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild())
            ++count;
        return count;
    }
    static std::size_t GetSize(std::size_t count) { return sizeof(FieldBlock) + count * sizeof(Field); }
    // Reads the branch's fields, `count` by Count, into memory of that size. Null when one of them
    // is malformed.
    static FieldBlock* Read(TCTreeBranch& branch, std::size_t count, void* memory) {
        auto* fields = new (memory) FieldBlock(count);
        auto* place = reinterpret_cast<Field*>(fields + 1);
        for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
            auto* field = new (place++) Field{node->GetTag(), node->GetSize(), {0}};
            if (field->size != 0 && field->size != static_cast<int>(values::SizeOfServiceField(field->tag)))
                return nullptr;
            node->CopyTo(&field->value, field->size);
        }
        return fields;
    }

    const Field* begin() const { return reinterpret_cast<const Field*>(this + 1); }
    const Field* end() const { return begin() + m_count; }

private:
    explicit FieldBlock(std::size_t count) : m_count(count) {}

    alignas(Field) std::size_t m_count;
};

// A record of a list, in one piece of memory with its fields.
class ListedServiceData final : public TCServiceData {
public:
    // Null if the branch is not a record.
    static TCServiceData* Make(TCTreeBranch& branch) {
        const std::size_t count = FieldBlock::Count(branch);
        void* memory = ::operator new(sizeof(ListedServiceData) + FieldBlock::GetSize(count));
        auto* record = new (memory) ListedServiceData;
        record->m_pState = FieldBlock::Read(branch, count, record->GetBlock());
        if (record->m_pState != nullptr)
            return record;
        delete record;
        return nullptr;
    }
    ~ListedServiceData() override { LeaveBlock(); }

    // Read into again, it becomes a record like any other.
    bool TreeToClass(TCTreeBranch& branch) override {
        LeaveBlock();
        return TCServiceData::TreeToClass(branch);
    }

    // The fields behind it go with it.
    // NOLINTNEXTLINE(cert-dcl54-cpp): the one operator new is private and takes the place.
    static void operator delete(void* memory) { ::operator delete(memory); }

private:
    ListedServiceData() = default;

    static void* operator new(std::size_t, void* memory) { return memory; }
    static void operator delete(void*, void*) {}
    void* GetBlock() { return this + 1; }
    void LeaveBlock() {
        if (m_pState == GetBlock())
            m_pState = nullptr;
    }
};
static_assert(sizeof(ListedServiceData) % alignof(FieldBlock) == 0);

} // namespace

// A field and the field table are views of the record's block, with the types that callers know.

const void* TCServiceField::GetData() const {
    const auto& field = *reinterpret_cast<const FieldBlock::Field*>(this);
    return field.size != 0 ? &field.value : nullptr;
}

const TCServiceField* TCServiceFieldTable::Find(int tag) const {
    for (const FieldBlock::Field& field : *reinterpret_cast<const FieldBlock*>(this)) {
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
        for (FieldBlock::Field field : *static_cast<const FieldBlock*>(m_pState))
            formatter.PushValue(static_cast<short>(field.tag), field.size, &field.value);
    }
    return formatter.Extract();
}

bool TCServiceData::TreeToClass(TCTreeBranch& branch) {
    const std::size_t count = FieldBlock::Count(branch);
    void* memory = ::operator new(FieldBlock::GetSize(count));
    FieldBlock* fields = FieldBlock::Read(branch, count, memory);
    if (fields == nullptr) {
        ::operator delete(memory);
        return false;
    }
    ::operator delete(m_pState);
    m_pState = fields;
    return true;
}

bool MarshalableRecords::TreeToClass(TCTreeBranch& branch) {
    std::list<TCServiceData*> arrived;
    for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
        // Every child that the marshalling library hands out is a branch; a leaf's has no children.
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
