#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ScanControl.h>

#include "MarshalableServiceCodes.h"
#include "MarshalableText.h"
#include "SessionProxy.h"

namespace {

class ScanControlProxy final : public SessionProxy<IScanControl, interfaces::ScanControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int IsTuneAroundNeeded(
        const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) override {
        RemoteCall call(GetSession());
        MarshalableServiceCodes servicesArgument(services);
        call.InObject(servicesArgument);
        return call.Make(Method::IsTuneAroundNeeded);
    }

    int StartTuneAround(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                        const std::string& caller) override {
        RemoteCall call(GetSession());
        MarshalableServiceCodes servicesArgument(services);
        call.InObject(servicesArgument);
        MarshalableText callerArgument(caller);
        call.InObject(callerArgument);
        return call.Make(Method::StartTuneAround);
    }

    int StopManualScan() override {
        RemoteCall call(GetSession());
        return call.Make(Method::StopManualScan);
    }

    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override {
        RemoteCall call(GetSession());
        call.InObject(tvMode);
        return call.Make(Method::IsBarkerChannelScanAvailable);
    }

    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override {
        RemoteCall call(GetSession());
        MarshalableText textArgument(text);
        call.InObject(textArgument);
        call.InObject(tvMode);
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
