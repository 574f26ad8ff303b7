#include <algorithm>

#include <norvex/client/TvMode.h>

#include "Interface.h"
#include "Programmes.h"
#include "Results.h"
#include "Scans.h"
#include "ServiceComponents.h"

namespace sim {

namespace {

// IScanControl: background scans, and whether they are needed.
class ScanControl : public Interface {
public:
    using Method = interfaces::ScanControlMethod;

    ScanControl(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines, Scans& scans)
        : Interface(interfaces::kTable<Method>, Calls::ToSession), m_log(context.log), m_lineUp(lineUp),
          m_programmes(programmes), m_pipelines(pipelines), m_scans(scans) {
        Add(Method::IsTuneAroundNeeded, {Out("status", kInt), In("services", kServiceCodes)},
            &ScanControl::IsTuneAroundNeeded);
        Add(Method::StartTuneAround, {Out("status", kInt), In("services", kServiceCodes), In("caller", kText)},
            &ScanControl::StartTuneAround);
        Add(Method::StopManualScan, {Out("status", kInt)}, &ScanControl::StopManualScan);
        Add(Method::IsBarkerChannelScanAvailable, {Out("status", kInt), In("tvMode", kTvMode)},
            &ScanControl::IsBarkerChannelScanAvailable);
        Add(Method::StartBarkerChannelScan, {Out("status", kInt), In("text", kText), In("tvMode", kTvMode)},
            &ScanControl::StartBarkerChannelScan);
        Add(Method::StopBarkerChannelScan, {Out("status", kInt)}, &ScanControl::StopBarkerChannelScan);
    }

private:
    // A service that is not in the line-up needs no programme.
    void IsTuneAroundNeeded(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        const std::vector<std::uint64_t> services = ReadServiceIds(in);
        const std::size_t lookedUp = std::min(services.size(), Scans::kMaxLookUps);
        const bool isNeeded = std::any_of(services.data(), services.data() + lookedUp, [this](std::uint64_t service) {
            return !m_programmes.HasPresent(service) && m_lineUp.FindFacts(service);
        });
        if (!isNeeded && lookedUp < services.size())
            return out.Int(0, m_log.Refuse(kTooMany, kTunerTag,
                                           "IsTuneAroundNeeded refused: not for the first %zu of %zu services",
                                           lookedUp, services.size()));
        out.Int(0, isNeeded);
    }

    void StartTuneAround(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        m_log.Write(kTunerTag, "tune around requested by \"%.*s\"", static_cast<int>(in.Text(2).size()),
                    in.Text(2).data());
        out.Int(0, m_scans.StartTuneAround(ReadServiceIds(in)));
    }

    void StopManualScan(const Call&, const ArgumentReader&, ReplyWriter& out) { out.Int(0, m_scans.StopTuneAround()); }

    void IsBarkerChannelScanAvailable(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        const std::int32_t antenna = ReadAntenna(in.Value<TvMode>(1).antenna);
        if (antenna == ANTENNA_NONE)
            return out.Int(0, kBadArgument);
        out.Int(0, m_lineUp.GetTables().FindBarker(antenna).has_value());
    }

    void StartBarkerChannelScan(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        const std::int32_t antenna = ReadAntenna(in.Value<TvMode>(2).antenna);
        out.Int(0, antenna == ANTENNA_NONE ? kBadArgument : m_scans.StartBarker(antenna));
    }

    void StopBarkerChannelScan(const Call&, const ArgumentReader&, ReplyWriter& out) {
        out.Int(0, m_scans.StopBarker());
    }

    static std::vector<std::uint64_t> ReadServiceIds(const ArgumentReader& in) {
        std::vector<std::uint64_t> ids;
        for (const values::ServiceCode& code : in.Value<std::vector<values::ServiceCode>>(1))
            ids.push_back(code.service);
        return ids;
    }

    // The antenna of a TV mode; -1 in it means the main pipeline's. Below 0, with a log line, if
    // invalid.
    std::int32_t ReadAntenna(std::int32_t antenna) {
        if (antenna == ANTENNA_NONE)
            return m_pipelines.Get(kMainPipeline).tvMode.antenna;
        if (antenna >= ANTENNA_AIR && antenna <= ANTENNA_SATELLITE)
            return antenna;
        m_log.Write(kTunerTag, "barker channel scan refused: unknown antenna %d", antenna);
        return ANTENNA_NONE;
    }

    Log& m_log;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
    Pipelines& m_pipelines;
    Scans& m_scans;
};

} // namespace

void RegisterScanControl(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines,
                         Scans& scans) {
    context.Register<ScanControl>(context, lineUp, programmes, pipelines, scans);
}

} // namespace sim
