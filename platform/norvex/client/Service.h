#pragma once

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/NorvexSession.h>
#include <norvex/client/ServiceData.h>

// The line-up's records.
class NORVEX_API IService : public INorvexSession {
public:
    // The first `count` services that meet the criteria; the first of them is stored in `record`. 0
    // or below: none.
    virtual int FindService(const TCCriteriaHelper& criteria, TCServiceData& record, int count) = 0;
};
