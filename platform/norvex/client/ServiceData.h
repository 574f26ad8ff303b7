#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

// One field of a service record. Lives inside its record.
class NORVEX_API TCServiceField {
public:
    TCServiceField() = delete;
    TCServiceField(const TCServiceField&) = delete;
    TCServiceField& operator=(const TCServiceField&) = delete;

    // The value: 64 bits unsigned for the service id, 32 bits signed for the other numbers; null
    // when the field has none. Aligned for its type.
    const void* GetData() const;
};

// The tagged fields of a service record. Lives inside its record.
class NORVEX_API TCServiceFieldTable {
public:
    TCServiceFieldTable() = delete;
    TCServiceFieldTable(const TCServiceFieldTable&) = delete;
    TCServiceFieldTable& operator=(const TCServiceFieldTable&) = delete;

    // Null when the record has no field with that tag.
    const TCServiceField* Find(int tag) const;
};

// One service as the middleware returns it, with the fields that the query fetched.
class NORVEX_API TCServiceData : public TCMarshalable {
public:
    TCServiceData();
    ~TCServiceData() override;
    TCServiceData(const TCServiceData&) = delete;
    TCServiceData& operator=(const TCServiceData&) = delete;

    // Null while nothing has been read into the record.
    const TCServiceFieldTable* GetFieldTable() const;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
};
