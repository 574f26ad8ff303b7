#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ScanControl.h>
#include <values/Values.h>

#include "SessionProxy.h"

namespace {

std::vector<values::ServiceCode>
ToCodes(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) {
    std::vector<values::ServiceCode> codes;
    for (const auto& [service, code] : services)
        codes.push_back({service, code});
    return codes;
}

class ScanControlProxy final : public SessionProxy<IScanControl, interfaces::ScanControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int IsTuneAroundNeeded(
        const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) override {
        RemoteCall call(GetSession());
        const std::vector<values::ServiceCode> codes = ToCodes(services);
        call.In(codes);
        return call.Make(Method::IsTuneAroundNeeded);
    }

    int StartTuneAround(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                        const std::string& caller) override {
        RemoteCall call(GetSession());
        const std::vector<values::ServiceCode> codes = ToCodes(services);
        call.In(codes);
        call.In(caller);
        return call.Make(Method::StartTuneAround);
    }

    int StopManualScan() override {
        RemoteCall call(GetSession());
        return call.Make(Method::StopManualScan);
    }

    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override {
        RemoteCall call(GetSession());
        call.In(tvMode);
        return call.Make(Method::IsBarkerChannelScanAvailable);
    }

    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override {
        RemoteCall call(GetSession());
        call.In(text);
        call.In(tvMode);
        return call.Make(Method::StartBarkerChannelScan);
    }

    int StopBarkerChannelScan() override {
        RemoteCall call(GetSession());
        return call.Make(Method::StopBarkerChannelScan);
    }
};

} // namespace

int NorvexAPI::CreateScanControl(IScanControl** scanControl) {
    return CreateSession<ScanControlProxy>(0, 0, scanControl);
}
