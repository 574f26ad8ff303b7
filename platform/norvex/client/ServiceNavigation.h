#pragma once

#include <cstdint>
#include <list>
#include <string>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/DTVMode.h>
#include <norvex/client/NorvexSession.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/TvMode.h>

// Navigation in a pipeline's line-up, and what the pipeline is tuned to.
class NORVEX_API IServiceNavigation : public INorvexSession {
public:
    virtual int GetTvMode(TSTvMode& tvMode) = 0;
    // Appends a record for every service that meets the criteria; the caller deletes the records.
    // The last two numbers select a page on models that have pages; 0, 0 means all.
    virtual int GetServiceList(const TCCriteriaHelper& criteria, std::list<TCServiceData*>& records,
                               const TSTvMode& tvMode, int first, int count) = 0;
    virtual int SetTvMode(const TSTvMode& tvMode, std::string& text) = 0;
    virtual int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId, std::string& text) = 0;
    virtual int SetDTVMode(EDTVMode mode, bool enable) = 0;
    virtual int SetService(const std::uint64_t& serviceId, int option, int flags, std::string& text) = 0;
    virtual int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode, int option) = 0;
    // The latest service of the internet-streamed line-up for a TV mode, then that of the broadcast
    // line-up. Their order in the interface matters.
    virtual int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) = 0;
    virtual int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) = 0;
};
