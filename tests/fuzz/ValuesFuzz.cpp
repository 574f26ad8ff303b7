// The client library's own objects, each read from one branch. What could be read can be written,
// and what is read from that is the same again.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TvMode.h>
#include <norvex/core/MessageBuffer.h>

#include "Require.h"

namespace {

std::string_view View(const TCMessageBuffer& buffer) {
    return {static_cast<const char*>(buffer.GetData()), buffer.GetSize()};
}

template <class T> void ReadAndWrite(TCMessageBuffer& buffer) {
    T object;
    if (!object.Load(&buffer))
        return;
    TCMessageBuffer written;
    TCMessageBuffer writtenAgain;
    T again;
    REQUIRE(object.Store(&written));
    REQUIRE(again.Load(&written) && again.Store(&writtenAgain));
    REQUIRE(View(written) == View(writtenAgain));
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
    return 0;
}
