#include "ScanControlProxy.h"

#include "MarshalableServiceCodes.h"
#include "MarshalableText.h"

int ScanControlProxy::IsTuneAroundNeeded(
    const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) {
    RemoteCall call(GetSession());
    MarshalableServiceCodes servicesArgument(services);
    call.InObject(servicesArgument);
    return call.Make("IsTuneAroundNeeded", 0);
}

int ScanControlProxy::StartTuneAround(
    const std::list<std::pair<std::uint64_t, std::uint32_t>>& services, const std::string& caller) {
    RemoteCall call(GetSession());
    MarshalableServiceCodes servicesArgument(services);
    call.InObject(servicesArgument);
    MarshalableText callerArgument(caller);
    call.InObject(callerArgument);
    return call.Make("StartTuneAround", 1);
}

int ScanControlProxy::StopManualScan() {
    RemoteCall call(GetSession());
    return call.Make("StopManualScan", 2);
}

int ScanControlProxy::IsBarkerChannelScanAvailable(const TSTvMode& tvMode) {
    RemoteCall call(GetSession());
    call.InObject(tvMode);
    return call.Make("IsBarkerChannelScanAvailable", 3);
}

int ScanControlProxy::StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) {
    RemoteCall call(GetSession());
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    call.InObject(tvMode);
    return call.Make("StartBarkerChannelScan", 4);
}

int ScanControlProxy::StopBarkerChannelScan() {
    RemoteCall call(GetSession());
    return call.Make("StopBarkerChannelScan", 5);
}
