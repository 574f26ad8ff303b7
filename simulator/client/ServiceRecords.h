#pragma once

#include <list>

#include <norvex/core/Marshalable.h>

class TCServiceData;

// Lets records come from the TV service: each child of the branch becomes a record at the end of
// the caller's list, whose owner deletes it. A reply that cannot be read leaves the list as it was.
class MarshalableRecords final : public TCMarshalable {
public:
    explicit MarshalableRecords(std::list<TCServiceData*>& records) : m_records(records) {}

    bool TreeToClass(TCTreeBranch& branch) override;
    int GetMarshalableStorageType() override { return 1; }

private:
    std::list<TCServiceData*>& m_records;
};
