#pragma once

#include <norvex/client/ServiceNavigation.h>

#include "SessionProxy.h"

class ServiceNavigationProxy final : public SessionProxy<IServiceNavigation> {
public:
    using SessionProxy::SessionProxy;

    int GetTvMode(TSTvMode& tvMode) override;
    int GetServiceList(const TCCriteriaHelper& criteria, std::list<TCServiceData*>& records,
                       const TSTvMode& tvMode, int first, int count) override;
    int SetTvMode(const TSTvMode& tvMode, std::string& text) override;
    int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId,
                  std::string& text) override;
    int SetDTVMode(EDTVMode mode, bool enable) override;
    int SetService(const std::uint64_t& serviceId, int option, int flags,
                   std::string& text) override;
    int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode,
                         int option) override;
    int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) override;
    int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) override;
};
