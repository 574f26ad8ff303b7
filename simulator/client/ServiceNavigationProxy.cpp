#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

#include "ServiceRecords.h"
#include "SessionProxy.h"

namespace {

class ServiceNavigationProxy final
    : public SessionProxy<IServiceNavigation, interfaces::ServiceNavigationMethod> {
public:
    using SessionProxy::SessionProxy;

    int GetTvMode(TSTvMode& tvMode) override {
        RemoteCall call(GetSession());
        call.Out(tvMode);
        return call.Make(Method::GetTvMode);
    }

    int GetServiceList(const TCCriteriaHelper& criteria, std::list<TCServiceData*>& records,
                       const TSTvMode& tvMode, int first, int count) override {
        RemoteCall call(GetSession());
        call.In(criteria);
        MarshalableRecords recordsArgument(records);
        call.Out(recordsArgument);
        call.In(tvMode);
        call.In(first);
        call.In(count);
        return call.Make(Method::GetServiceList);
    }

    int SetTvMode(const TSTvMode& tvMode, std::string& text) override {
        RemoteCall call(GetSession());
        call.In(tvMode);
        call.In(text);
        return call.Make(Method::SetTvMode);
    }

    int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId,
                  std::string& text) override {
        RemoteCall call(GetSession());
        call.In(tvMode);
        call.In(serviceId);
        call.In(text);
        return call.Make(Method::SetTvMode_Service);
    }

    int SetDTVMode(EDTVMode mode, bool enable) override {
        RemoteCall call(GetSession());
        call.In(mode);
        call.In(enable);
        return call.Make(Method::SetDTVMode);
    }

    int SetService(const std::uint64_t& serviceId, int option, int flags,
                   std::string& text) override {
        RemoteCall call(GetSession());
        call.In(serviceId);
        call.In(option);
        call.In(flags);
        call.In(text);
        return call.Make(Method::SetService);
    }

    int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode,
                         int option) override {
        RemoteCall call(GetSession());
        call.In(serviceId);
        call.In(tvMode);
        call.In(option);
        return call.Make(Method::SetBootupService);
    }

    int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        if (serviceId == nullptr)
            return -1;
        RemoteCall call(GetSession());
        call.Out(*serviceId);
        call.In(tvMode);
        return call.Make(Method::GetLatestVeldaServiceId);
    }

    int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        if (serviceId == nullptr)
            return -1;
        RemoteCall call(GetSession());
        call.Out(*serviceId);
        call.In(tvMode);
        return call.Make(Method::GetLatestServiceId);
    }
};

} // namespace

int NorvexAPI::CreateServiceNavigation(EProfile profile, int screen,
                                       IServiceNavigation** serviceNavigation) {
    return CreateSession<ServiceNavigationProxy>(profile, screen, serviceNavigation);
}
