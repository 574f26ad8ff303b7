#include "ServiceRecord.h"

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/ServiceId.h>
#include <norvex/core/PrintMessage.h>

const void* serviceField(const TCServiceData& record, int tag) {
    const TCServiceFieldTable* const table = record.GetFieldTable();
    const TCServiceField* const field = table != nullptr ? table->Find(tag) : nullptr;
    if (field != nullptr) {
        if (const void* const value = field->GetData()) {
            return value;
        }
        // "do data": what people search the logs for.
        TCApiPrintMessage("tag %d has do data", tag);
    }
    TCApiPrintMessage("*************************** ASSERT TAG ***************************");
    TCApiPrintMessage("******************* ASSERT: missing tag[%3d] *********************", tag);
    TCApiPrintMessage("*************************** ASSERT TAG ***************************");
    return nullptr;
}

std::uint64_t serviceIdField(const TCServiceData& record) {
    const void* const value = serviceField(record, SERVICE_FIELD_ID);
    return value != nullptr ? *static_cast<const std::uint64_t*>(value) : INVALID_SERVICE_ID;
}

int numberField(const TCServiceData& record, int tag) {
    const void* const value = serviceField(record, tag);
    return value != nullptr ? *static_cast<const std::int32_t*>(value) : -1;
}

TSServiceRecords::~TSServiceRecords() {
    for (const TCServiceData* const record : m_list) {
        delete record;
    }
}
