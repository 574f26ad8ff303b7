#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <utility>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/TvMode.h>

// Scans that run in the background of the middleware and report by signals.
class NORVEX_API IScanControl : public INorvexSession {
public:
    // Services are pairs of service id and a code (5: a service of the channel list).
    virtual int IsTuneAroundNeeded(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) = 0;
    virtual int StartTuneAround(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services,
                                const std::string& caller) = 0;
    virtual int StopManualScan() = 0;
    virtual int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) = 0;
    virtual int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) = 0;
    virtual int StopBarkerChannelScan() = 0;
};
