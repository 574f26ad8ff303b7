#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

// Fields of a service, as queries and records number them.
enum EServiceField : int {
    SERVICE_FIELD_CHANNEL_TYPE = 1,
    SERVICE_FIELD_PROFILE = 3,
    SERVICE_FIELD_FREQUENCY = 4,
    SERVICE_FIELD_ID = 12,
    SERVICE_FIELD_MAJOR = 13,
    SERVICE_FIELD_MINOR = 14,
    SERVICE_FIELD_LISTED = 23,
    SERVICE_FIELD_HIDDEN = 25,
    SERVICE_FIELD_VIRTUAL_ANTENNA = 115,
};

// Channel type of virtual (internet-streamed) channels.
constexpr int CHANNEL_TYPE_VIRTUAL = 9;

// A query for services: all conditions must hold, and a record holds only the fetched fields.
// Conditions and fields keep the order in which they were added.
class NORVEX_API TCCriteriaHelper : public TCMarshalable {
public:
    TCCriteriaHelper();
    ~TCCriteriaHelper() override;
    TCCriteriaHelper(const TCCriteriaHelper&) = delete;
    TCCriteriaHelper& operator=(const TCCriteriaHelper&) = delete;

    void Where(int field, int value);
    void WhereNot(int field, int value);
    void Fetch(int field);

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
};
