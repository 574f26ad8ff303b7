#pragma once

#include "Interface.h"
#include "Programmes.h"
#include "Scans.h"

namespace sim {

// com.holvi.IScanControl: whether a scan has something to do, and scans that run in the background.
class ScanControl : public Interface {
public:
    ScanControl(Context& context, ServiceLineUp& lineUp, Programmes& programmes,
                Pipelines& pipelines, Scans& scans);

private:
    void IsTuneAroundNeeded(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StartTuneAround(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StopManualScan(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsBarkerChannelScanAvailable(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StartBarkerChannelScan(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StopBarkerChannelScan(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    // Of a TV mode; -1 in it is what the main pipeline has. Below 0, and a log line: none.
    std::int32_t ReadAntenna(const wire::Node& tvMode);

    Log& m_log;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
    Pipelines& m_pipelines;
    Scans& m_scans;
};

} // namespace sim
