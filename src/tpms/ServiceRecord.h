#pragma once

#include <cstdint>
#include <list>

#include <norvex/client/ServiceData.h>

// Reading of service records. A field that is missing or empty is logged, never printed.

// The value of a record's field; null when there is none.
const void* serviceField(const TCServiceData& record, int tag);
// Field 12; INVALID_SERVICE_ID when there is none.
std::uint64_t serviceIdField(const TCServiceData& record);
// A field of 32 bits; -1 when there is none.
int numberField(const TCServiceData& record, int tag);

// The records of one IServiceNavigation::GetServiceList, which belong to its caller.
struct TSServiceRecords {
    TSServiceRecords() = default;
    ~TSServiceRecords();
    TSServiceRecords(const TSServiceRecords&) = delete;
    TSServiceRecords& operator=(const TSServiceRecords&) = delete;

    std::list<TCServiceData*> m_list;
};
