#include "Scans.h"

#include <algorithm>
#include <cinttypes>

#include <base/Number.h>
#include <nlohmann/json.hpp>
#include <norvex/client/ServiceId.h>

#include "Event.h"
#include "Results.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::uint32_t kMaxPace = 3600 * 1000;
// Services that are looked up, or whose programmes are collected, in a row before other events are handled.
constexpr std::size_t kLookedUpATime = 1000;
constexpr std::size_t kCollectedATime = 500;

} // namespace

Scans::Scans(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines,
             const Inputs& inputs, Subscribers& subscribers)
    : m_context(context), m_lineUp(lineUp), m_programmes(programmes), m_pipelines(pipelines), m_inputs(inputs),
      m_subscribers(subscribers) {
    context.settings.Add("scan-pace", "MILLISECONDS: how long a scan stays on a service",
                         [this](const auto& values, auto&) {
                             std::uint32_t pace = 0;
                             if (values.size() != 1 || !ParseNumber(values[0], pace) || pace > kMaxPace)
                                 return false;
                             m_state.pace = pace;
                             return true;
                         });
}

const char* Scans::ToText(Running running) {
    switch (running) {
    case Running::TuneAround:
        return "tune around";
    case Running::Barker:
        return "barker channel";
    case Running::Nothing:
        break;
    }
    return "nothing";
}

std::int32_t Scans::StartTuneAround(std::vector<std::uint64_t> services) {
    // Unknown ones are passed over when the scan comes to them.
    const std::size_t lookedUp = std::min(services.size(), kMaxLookUps);
    const bool any = std::any_of(services.data(), services.data() + lookedUp,
                                 [this](std::uint64_t id) { return m_lineUp.FindFacts(id).has_value(); });
    if (!any)
        return m_context.log.Refuse(kBadArgument, kTunerTag,
                                    "tune around refused: none of the first %zu services is in the line-up", lookedUp);
    const std::int32_t status = Start(Running::TuneAround, std::move(services));
    if (status == kDone)
        After(0, &Scans::BeginVisit);
    return status;
}

std::int32_t Scans::StartBarker(std::int32_t antenna) {
    const std::int32_t status = Start(Running::Barker, {});
    if (status == kDone) {
        m_state.antenna = antenna;
        After(0, &Scans::BeginBarker);
    }
    return status;
}

std::int32_t Scans::Start(Running what, std::vector<std::uint64_t> services) {
    if (m_state.running != Running::Nothing)
        return m_context.log.Refuse(kRefused, kTunerTag, "%s refused: %s is running", ToText(what),
                                    ToText(m_state.running));
    m_context.changes.Mark("/scan");
    m_state.running = what;
    m_state.services = std::move(services);
    m_state.place = m_state.done = 0;
    m_state.visited = INVALID_SERVICE_ID;
    m_context.log.Write(kTunerTag, "%s starts", ToText(what));
    return kDone;
}

std::int32_t Scans::StopTuneAround() {
    const std::int32_t status = Stop(Running::TuneAround);
    if (status == kDone)
        Finish(SIGNAL_TUNE_AROUND_FINISHED, 1, "stopped");
    return status;
}

std::int32_t Scans::StopBarker() {
    const std::int32_t status = Stop(Running::Barker);
    if (status == kDone)
        Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "stopped");
    return status;
}

std::int32_t Scans::Stop(Running what) {
    if (m_state.running == what)
        return kDone;
    return m_context.log.Refuse(kRefused, kTunerTag, "%s cannot be stopped: %s is running", ToText(what),
                                ToText(m_state.running));
}

void Scans::After(std::uint32_t milliseconds, void (Scans::*step)()) {
    m_timer.Start(milliseconds, [this, step] {
        m_context.changes.Mark("/scan");
        const Event event(m_context);
        (this->*step)();
    });
}

const char* Scans::WhyNotReceived(const std::optional<ServiceFacts>& facts) const {
    if (!facts)
        return "is not in the line-up";
    if (facts->streamed)
        return nullptr;
    const Transponder transponder{facts->antenna, facts->frequency};
    if (m_pipelines.Get(kMainPipeline).GetTuner() != transponder)
        return "is not received: the tuner is on another transponder";
    return m_inputs.HasSignal(transponder) ? nullptr : "has no signal";
}

void Scans::Visit(std::uint64_t service, const ServiceFacts& facts) {
    m_state.visited = service;
    m_context.log.Write(kTunerTag, "%s: tuning to service 0x%" PRIx64, ToText(m_state.running), service);
    if (!facts.streamed)
        m_pipelines.LendTuner(m_pipelines.At(kMainPipeline), Transponder{facts.antenna, facts.frequency});
    if (WhyNotReceived(facts) == nullptr)
        m_subscribers.Emit(SIGNAL_SI_STARTED, kMainPipeline, ToSignalData(facts));
}

void Scans::BeginVisit() {
    const std::size_t first = m_state.place;
    const std::size_t end = std::min(m_state.services.size(), first + kLookedUpATime);
    std::optional<ServiceFacts> facts;
    while (m_state.place < end && !(facts = m_lineUp.FindFacts(m_state.services[m_state.place])))
        ++m_state.place;
    if (m_state.place > first)
        m_context.log.Write(kTunerTag, "tune around: %zu services are not in the line-up, the first is 0x%" PRIx64,
                            m_state.place - first, m_state.services[first]);
    if (facts) {
        Visit(m_state.services[m_state.place], *facts);
        return After(m_state.pace, &Scans::EndVisit);
    }
    if (m_state.place < m_state.services.size())
        return After(0, &Scans::BeginVisit);
    Finish(SIGNAL_TUNE_AROUND_FINISHED, 0, "completed");
}

void Scans::EndVisit() {
    if (const char* why = WhyNotReceived(m_lineUp.FindFacts(m_state.visited))) {
        m_context.log.Write(kTunerTag, "tune around: service 0x%" PRIx64 " %s", m_state.visited, why);
    } else {
        if (!m_programmes.Collect(m_state.visited))
            m_context.log.Write(kTunerTag, "programmes of service 0x%" PRIx64 " could not be stored: %s",
                                m_state.visited, m_context.database.GetError().c_str());
        ++m_state.done;
        m_subscribers.Emit(SIGNAL_TUNE_AROUND_SERVICE_DONE, kMainPipeline, m_state.visited);
    }
    ++m_state.place;
    NoteProgress();
    BeginVisit();
}

void Scans::NoteProgress() {
    m_context.log.WriteDebug(Debug::ScanProgress, "%s: %zu of %zu, %zu done", ToText(m_state.running), m_state.place,
                             m_state.services.size(), m_state.done);
}

void Scans::BeginBarker() {
    const auto barker = m_lineUp.GetTables().FindBarker(m_state.antenna);
    const auto facts = barker ? m_lineUp.FindFacts(*barker) : std::nullopt;
    if (!facts) {
        m_context.log.Write(kTunerTag, "no barker channel on %s", ToAntennaName(m_state.antenna).c_str());
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    }
    Visit(*barker, *facts);
    After(m_state.pace, &Scans::EndBarker);
}

void Scans::EndBarker() {
    if (const char* why = WhyNotReceived(m_lineUp.FindFacts(m_state.visited))) {
        m_context.log.Write(kTunerTag, "barker channel 0x%" PRIx64 " %s", m_state.visited, why);
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    }
    const bool all = m_lineUp.GetTables().ForEachReceived(
        m_state.antenna, [this](std::uint64_t service) { m_state.services.push_back(service); });
    if (!all)
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    CollectSome();
}

void Scans::CollectSome() {
    Transaction transaction(m_context.database);
    const std::size_t end = std::min(m_state.services.size(), m_state.place + kCollectedATime);
    bool kept = transaction.IsOpen();
    while (kept && m_state.place < end) {
        const std::uint64_t service = m_state.services[m_state.place++];
        if (!m_lineUp.FindFacts(service))
            continue;
        kept = m_programmes.Collect(service);
        ++m_state.done;
    }
    if (!kept || !transaction.Commit())
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    NoteProgress();
    if (m_state.place < m_state.services.size())
        return After(0, &Scans::CollectSome);
    Finish(SIGNAL_BARKER_CHANNEL_TUNE, 1, "completed");
}

void Scans::Finish(ESignalType type, std::uint64_t data, const char* outcome) {
    m_timer.Stop();
    m_context.log.Write(kTunerTag, "%s %s, %zu of %zu services done", ToText(m_state.running), outcome, m_state.done,
                        m_state.services.size());
    m_context.changes.Mark("/scan");
    m_state.running = Running::Nothing;
    m_state.visited = INVALID_SERVICE_ID;
    m_state.outcome = outcome;
    m_subscribers.Emit(type, kMainPipeline, data);
    m_pipelines.LendTuner(m_pipelines.At(kMainPipeline), {});
}

json Scans::DescribeState() const {
    const bool runs = m_state.running != Running::Nothing;
    const bool visits = m_state.visited != INVALID_SERVICE_ID;
    return {{"running", !runs                                    ? json()
                        : m_state.running == Running::TuneAround ? json("tuneAround")
                                                                 : "barker"},
            {"service", visits ? ToHexText(m_state.visited) : json()},
            {"done", m_state.done},
            {"of", m_state.services.size()},
            {"paceMs", m_state.pace},
            {"last", m_state.outcome != nullptr ? json(m_state.outcome) : json()}};
}

bool Scans::Reset() {
    m_timer.Stop();
    m_state = {};
    return true;
}

} // namespace sim
