#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

#include "ServiceRecords.h"
#include "SessionProxy.h"

namespace {

class ServiceNavigationProxy final : public SessionProxy<IServiceNavigation, interfaces::ServiceNavigationMethod> {
public:
    using SessionProxy::SessionProxy;

    int GetTvMode(TSTvMode& tvMode) override { return Call(Method::GetTvMode).Out(tvMode).Make(); }

    int GetServiceList(const TCCriteriaHelper& criteria, std::list<TCServiceData*>& records, const TSTvMode& tvMode,
                       int first, int count) override {
        MarshalableRecords marshalable(records);
        return Call(Method::GetServiceList).In(criteria).Out(marshalable).In(tvMode).In(first).In(count).Make();
    }

    int SetTvMode(const TSTvMode& tvMode, std::string& text) override {
        return Call(Method::SetTvMode).In(tvMode).In(text).Make();
    }

    int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId, std::string& text) override {
        return Call(Method::SetTvMode_Service).In(tvMode).In(serviceId).In(text).Make();
    }

    int SetDTVMode(EDTVMode mode, bool enable) override { return Call(Method::SetDTVMode).In(mode).In(enable).Make(); }

    int SetService(const std::uint64_t& serviceId, int option, int flags, std::string& text) override {
        return Call(Method::SetService).In(serviceId).In(option).In(flags).In(text).Make();
    }

    int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode, int option) override {
        return Call(Method::SetBootupService).In(serviceId).In(tvMode).In(option).Make();
    }

    int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        if (serviceId == nullptr)
            return -1;
        return Call(Method::GetLatestVeldaServiceId).Out(*serviceId).In(tvMode).Make();
    }

    int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        if (serviceId == nullptr)
            return -1;
        return Call(Method::GetLatestServiceId).Out(*serviceId).In(tvMode).Make();
    }
};

} // namespace

int NorvexAPI::CreateServiceNavigation(EProfile profile, int screen, IServiceNavigation** serviceNavigation) {
    return CreateSession<ServiceNavigationProxy>(profile, screen, serviceNavigation);
}
