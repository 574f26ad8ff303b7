#pragma once

#include <norvex/client/ScanControl.h>

#include "SessionProxy.h"

class ScanControlProxy final : public SessionProxy<IScanControl> {
public:
    using SessionProxy::SessionProxy;

    int
    IsTuneAroundNeeded(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) override;
    int StartTuneAround(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                        const std::string& caller) override;
    int StopManualScan() override;
    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override;
    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override;
    int StopBarkerChannelScan() override;
};
