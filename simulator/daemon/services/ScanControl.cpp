#include "ScanControl.h"

#include <algorithm>

#include <norvex/client/TvMode.h>

#include "PipelineTypes.h"
#include "Results.h"
#include "ServiceTypes.h"

namespace sim {

ScanControl::ScanControl(Context& context, ServiceLineUp& lineUp, Programmes& programmes,
                         Pipelines& pipelines, Scans& scans)
    : Interface("com.holvi.IScanControl", Calls::ToSession), m_log(context.log), m_lineUp(lineUp),
      m_programmes(programmes), m_pipelines(pipelines), m_scans(scans) {
    Add("IsTuneAroundNeeded", {Out("status", kInt), In("services", kServiceCodes)},
        &ScanControl::IsTuneAroundNeeded);
    Add("StartTuneAround",
        {Out("status", kInt), In("services", kServiceCodes), In("caller", kText)},
        &ScanControl::StartTuneAround);
    Add("StopManualScan", {Out("status", kInt)}, &ScanControl::StopManualScan);
    Add("IsBarkerChannelScanAvailable", {Out("status", kInt), In("tvMode", kTvMode)},
        &ScanControl::IsBarkerChannelScanAvailable);
    Add("StartBarkerChannelScan", {Out("status", kInt), In("text", kText), In("tvMode", kTvMode)},
        &ScanControl::StartBarkerChannelScan);
    Add("StopBarkerChannelScan", {Out("status", kInt)}, &ScanControl::StopBarkerChannelScan);
}

// A service that is not in the line-up needs no programme.
void ScanControl::IsTuneAroundNeeded(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    const std::vector<std::uint64_t> services = ReadServiceIds(in.At(1));
    out.Int(0, std::any_of(services.begin(), services.end(), [this](std::uint64_t service) {
                return !m_programmes.HasPresent(service) && m_lineUp.FindFacts(service);
            }));
}

void ScanControl::StartTuneAround(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    m_log.Write("tvtunerinfosrc", "tune around asked for by \"%.*s\"",
                static_cast<int>(in.Text(2).size()), in.Text(2).data());
    out.Int(0, m_scans.StartTuneAround(ReadServiceIds(in.At(1))));
}

void ScanControl::StopManualScan(const Call&, const ArgumentReader&, ReplyWriter& out) {
    out.Int(0, m_scans.StopTuneAround());
}

std::int32_t ScanControl::ReadAntenna(const wire::Node& node) {
    const std::int32_t antenna = ReadTvMode(node).antenna;
    if (antenna == ANTENNA_NONE)
        return m_pipelines.At(kMainPipeline).tvMode.antenna;
    if (antenna >= ANTENNA_AIR && antenna <= ANTENNA_SATELLITE)
        return antenna;
    m_log.Write("tvtunerinfosrc", "barker channel scan refused: no antenna %d", antenna);
    return ANTENNA_NONE;
}

void ScanControl::IsBarkerChannelScanAvailable(const Call&, const ArgumentReader& in,
                                               ReplyWriter& out) {
    const std::int32_t antenna = ReadAntenna(in.At(1));
    if (antenna == ANTENNA_NONE)
        return out.Int(0, kBadArgument);
    out.Int(0, m_lineUp.GetTables().FindBarker(antenna).has_value());
}

void ScanControl::StartBarkerChannelScan(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    const std::int32_t antenna = ReadAntenna(in.At(2));
    out.Int(0, antenna == ANTENNA_NONE ? kBadArgument : m_scans.StartBarker(antenna));
}

void ScanControl::StopBarkerChannelScan(const Call&, const ArgumentReader&, ReplyWriter& out) {
    out.Int(0, m_scans.StopBarker());
}

} // namespace sim
