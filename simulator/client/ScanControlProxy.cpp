#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ScanControl.h>
#include <values/Values.h>

#include "SessionProxy.h"

namespace {

std::vector<values::ServiceCode> ToCodes(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) {
    std::vector<values::ServiceCode> codes;
    for (const auto& [service, code] : services)
        codes.push_back({service, code});
    return codes;
}

class ScanControlProxy final : public SessionProxy<IScanControl, interfaces::ScanControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int IsTuneAroundNeeded(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) override {
        return Call(Method::IsTuneAroundNeeded).In(ToCodes(services)).Make();
    }

    int StartTuneAround(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                        const std::string& caller) override {
        return Call(Method::StartTuneAround).In(ToCodes(services)).In(caller).Make();
    }

    int StopManualScan() override { return Call(Method::StopManualScan).Make(); }

    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override {
        return Call(Method::IsBarkerChannelScanAvailable).In(tvMode).Make();
    }

    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override {
        return Call(Method::StartBarkerChannelScan).In(text).In(tvMode).Make();
    }

    int StopBarkerChannelScan() override { return Call(Method::StopBarkerChannelScan).Make(); }
};

} // namespace

int NorvexAPI::CreateScanControl(IScanControl** scanControl) {
    return CreateSession<ScanControlProxy>(0, 0, scanControl);
}
