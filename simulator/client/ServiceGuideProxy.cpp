#include "ServiceGuideProxy.h"

int ServiceGuideProxy::GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) {
    RemoteCall call(GetSession());
    call.In(serviceId);
    call.OutObject(program);
    return call.Make("GetCurrentProgram", 0);
}
