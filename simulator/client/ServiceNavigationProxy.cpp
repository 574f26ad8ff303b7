#include "ServiceNavigationProxy.h"

#include "MarshalableServiceRecords.h"
#include "MarshalableText.h"

int ServiceNavigationProxy::GetTvMode(TSTvMode& tvMode) {
    RemoteCall call(GetSession());
    call.OutObject(tvMode);
    return call.Make("GetTvMode", 0);
}

int ServiceNavigationProxy::GetServiceList(const TCCriteriaHelper& criteria,
                                           std::list<TCServiceData*>& records,
                                           const TSTvMode& tvMode, int first, int count) {
    RemoteCall call(GetSession());
    call.InObject(criteria);
    MarshalableServiceRecords recordsArgument(records);
    call.OutObject(recordsArgument);
    call.InObject(tvMode);
    call.In(first);
    call.In(count);
    return call.Make("GetServiceList", 1);
}

int ServiceNavigationProxy::SetTvMode(const TSTvMode& tvMode, std::string& text) {
    RemoteCall call(GetSession());
    call.InObject(tvMode);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetTvMode", 2);
}

int ServiceNavigationProxy::SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId,
                                      std::string& text) {
    RemoteCall call(GetSession());
    call.InObject(tvMode);
    call.In(serviceId);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetTvMode", 3);
}

int ServiceNavigationProxy::SetDTVMode(EDTVMode mode, bool enable) {
    RemoteCall call(GetSession());
    call.In(mode);
    call.In(enable);
    return call.Make("SetDTVMode", 4);
}

int ServiceNavigationProxy::SetService(const std::uint64_t& serviceId, int option, int flags,
                                       std::string& text) {
    RemoteCall call(GetSession());
    call.In(serviceId);
    call.In(option);
    call.In(flags);
    MarshalableText textArgument(text);
    call.InObject(textArgument);
    return call.Make("SetService", 5);
}

int ServiceNavigationProxy::SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode,
                                             int option) {
    RemoteCall call(GetSession());
    call.In(serviceId);
    call.InObject(tvMode);
    call.In(option);
    return call.Make("SetBootupService", 6);
}

int ServiceNavigationProxy::GetLatestVeldaServiceId(unsigned long long* serviceId,
                                                    TSTvMode tvMode) {
    if (serviceId == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.Out(*serviceId);
    call.InObject(tvMode);
    return call.Make("GetLatestVeldaServiceId", 7);
}

int ServiceNavigationProxy::GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) {
    if (serviceId == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.Out(*serviceId);
    call.InObject(tvMode);
    return call.Make("GetLatestServiceId", 8);
}
