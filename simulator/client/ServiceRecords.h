#pragma once

#include <list>

#include <norvex/core/Marshalable.h>

class TCServiceData;

// Receives records: each child of the branch becomes a record at the end of the caller's list,
// whose owner deletes it. If the reply cannot be read, the list stays unchanged.
class MarshalableRecords final : public TCMarshalable {
public:
    explicit MarshalableRecords(std::list<TCServiceData*>& records) : m_records(records) {}

    bool TreeToClass(TCTreeBranch& branch) override;
    int GetMarshalableStorageType() override { return 1; }

private:
    std::list<TCServiceData*>& m_records;
};
