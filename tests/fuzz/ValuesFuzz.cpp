// The client library's own objects, each read from one branch; what could be read can be written
// and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <list>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TvMode.h>
#include <norvex/core/MessageBuffer.h>

#include "MarshalableIntegers.h"
#include "MarshalableServiceRecords.h"

namespace {

template <class T> void ReadAndWrite(TCMessageBuffer& buffer) {
    T object;
    if (!object.Load(&buffer))
        return;
    TCMessageBuffer written;
    T again;
    if (!object.Store(&written) || !again.Load(&written))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TCMessageBuffer buffer;
    buffer.Append(data, size);
    ReadAndWrite<TCCriteriaHelper>(buffer);
    ReadAndWrite<TCProgramData>(buffer);
    ReadAndWrite<TCServiceData>(buffer);
    ReadAndWrite<TCTPMSStatus>(buffer);
    ReadAndWrite<TSRectInfo>(buffer);
    ReadAndWrite<TSTvMode>(buffer);
    std::vector<int> numbers;
    MarshalableIntegers(numbers).Load(&buffer);
    std::list<TCServiceData*> records;
    MarshalableServiceRecords(records).Load(&buffer);
    std::size_t found = 0;
    for (TCServiceData* record : records) {
        const TCServiceField* field = record->GetFieldTable()->Find(SERVICE_FIELD_ID);
        if (field != nullptr && field->GetData() != nullptr)
            found += *static_cast<const std::uint64_t*>(field->GetData()) & 1;
        delete record;
    }
    return found > size ? 1 : 0;
}
