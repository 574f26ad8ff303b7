#include "Scans.h"

#include <algorithm>
#include <cinttypes>

#include <nlohmann/json.hpp>
#include <norvex/client/ServiceId.h>

#include "Event.h"
#include "Results.h"
#include <base/Number.h>

namespace sim {

using nlohmann::json;

namespace {

constexpr std::uint32_t kMaxPace = 3600 * 1000;
// Services whose programmes are collected before others have their turn.
constexpr std::size_t kCollectedATime = 500;

} // namespace

Scans::Scans(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines,
             const Inputs& inputs, Subscribers& subscribers)
    : m_context(context), m_lineUp(lineUp), m_programmes(programmes), m_pipelines(pipelines),
      m_inputs(inputs), m_subscribers(subscribers) {
    context.settings.Add("scan-pace", "MILLISECONDS: how long a scan stays with a service",
                         [this](const auto& words, auto&) {
                             std::uint32_t pace = 0;
                             if (words.size() != 1 || !ParseNumber(words[0], pace) ||
                                 pace > kMaxPace)
                                 return false;
                             m_pace = pace;
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
    const std::size_t given = services.size();
    std::erase_if(services, [this](std::uint64_t id) { return !m_lineUp.FindFacts(id); });
    if (services.size() < given)
        m_context.log.Write(kTunerTag, "tune around: %zu services are not in the line-up",
                            given - services.size());
    if (services.empty()) {
        m_context.log.Write(kTunerTag, "tune around refused: no service to visit");
        return kBadArgument;
    }
    const std::int32_t status = Start(Running::TuneAround, std::move(services));
    if (status == kDone)
        After(0, &Scans::BeginVisit);
    return status;
}

std::int32_t Scans::StartBarker(std::int32_t antenna) {
    const std::int32_t status = Start(Running::Barker, {});
    if (status == kDone) {
        m_antenna = antenna;
        After(0, &Scans::BeginBarker);
    }
    return status;
}

std::int32_t Scans::Start(Running what, std::vector<std::uint64_t> services) {
    if (m_running != Running::Nothing) {
        m_context.log.Write(kTunerTag, "%s refused: %s runs", ToText(what), ToText(m_running));
        return kRefused;
    }
    m_running = what;
    m_services = std::move(services);
    m_place = 0;
    m_visited = INVALID_SERVICE_ID;
    m_tunerBefore = m_pipelines.At(kMainPipeline).tuner;
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
    if (m_running == what)
        return kDone;
    m_context.log.Write(kTunerTag, "%s cannot be stopped: %s runs", ToText(what),
                        ToText(m_running));
    return kRefused;
}

void Scans::After(std::uint32_t milliseconds, void (Scans::*step)()) {
    m_timer.Start(milliseconds, [this, step] {
        const Event event(m_context);
        (this->*step)();
    });
}

bool Scans::HasSignal(const ServiceFacts& facts) const {
    return facts.streamed || m_inputs.HasSignal({facts.antenna, facts.frequency});
}

void Scans::Visit(std::uint64_t service, const ServiceFacts& facts) {
    m_visited = service;
    m_facts = facts;
    m_context.log.Write(kTunerTag, "%s visits service 0x%" PRIx64, ToText(m_running), service);
    if (!facts.streamed)
        m_pipelines.MoveTuner(m_pipelines.At(kMainPipeline), {facts.antenna, facts.frequency});
    if (HasSignal(facts))
        m_subscribers.Emit(SIGNAL_SI_STARTED, kMainPipeline, ToSignalData(facts));
    else
        m_context.log.Write(kTunerTag, "no signal of service 0x%" PRIx64, service);
}

void Scans::BeginVisit() {
    // The line-up may be another one by now.
    for (; m_place < m_services.size(); ++m_place) {
        if (const auto facts = m_lineUp.FindFacts(m_services[m_place])) {
            Visit(m_services[m_place], *facts);
            return After(m_pace, &Scans::EndVisit);
        }
    }
    Finish(SIGNAL_TUNE_AROUND_FINISHED, 0, "completed");
}

void Scans::EndVisit() {
    if (HasSignal(m_facts)) {
        if (!m_programmes.Collect(m_visited))
            m_context.log.Write(kTunerTag, "programmes of service 0x%" PRIx64 " were not kept: %s",
                                m_visited, m_context.database.GetError().c_str());
        m_subscribers.Emit(SIGNAL_TUNE_AROUND_SERVICE_DONE, kMainPipeline, m_visited);
    }
    ++m_place;
    BeginVisit();
}

void Scans::BeginBarker() {
    const auto barker = m_lineUp.GetTables().FindBarker(m_antenna);
    const auto facts = barker ? m_lineUp.FindFacts(*barker) : std::nullopt;
    if (!facts) {
        m_context.log.Write(kTunerTag, "no barker channel on %s", ToAntennaName(m_antenna).c_str());
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    }
    Visit(*barker, *facts);
    After(m_pace, &Scans::EndBarker);
}

void Scans::EndBarker() {
    if (!HasSignal(m_facts))
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    const bool all = m_lineUp.GetTables().ForEachReceived(
        m_antenna, [this](std::uint64_t service) { m_services.push_back(service); });
    if (!all)
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    CollectSome();
}

void Scans::CollectSome() {
    Transaction transaction(m_context.database);
    const std::size_t end = std::min(m_services.size(), m_place + kCollectedATime);
    bool kept = transaction.IsOpen();
    while (kept && m_place < end)
        kept = m_programmes.Collect(m_services[m_place++]);
    if (!kept || !transaction.Commit())
        return Finish(SIGNAL_BARKER_CHANNEL_TUNE, 0, "failed");
    if (m_place < m_services.size())
        return After(0, &Scans::CollectSome);
    Finish(SIGNAL_BARKER_CHANNEL_TUNE, 1, "completed");
}

void Scans::Finish(ESignalType type, std::uint64_t data, const char* outcome) {
    m_timer.Stop();
    m_context.log.Write(kTunerTag, "%s %s after %zu of %zu", ToText(m_running), outcome, m_place,
                        m_services.size());
    m_running = Running::Nothing;
    m_visited = INVALID_SERVICE_ID;
    m_outcome = outcome;
    Pipeline& pipeline = m_pipelines.At(kMainPipeline);
    const bool tuned = pipeline.service != INVALID_SERVICE_ID && !pipeline.facts.streamed;
    m_pipelines.MoveTuner(pipeline,
                          tuned ? Transponder{pipeline.tvMode.antenna, pipeline.facts.frequency}
                                : m_tunerBefore);
    m_subscribers.Emit(type, kMainPipeline, data);
}

json Scans::DescribeState() const {
    json described{{"running", nullptr},      {"service", nullptr}, {"done", m_place},
                   {"of", m_services.size()}, {"paceMs", m_pace},   {"last", nullptr}};
    if (m_running != Running::Nothing)
        described["running"] = m_running == Running::TuneAround ? "tuneAround" : "barker";
    if (m_visited != INVALID_SERVICE_ID)
        described["service"] = ToHexText(m_visited);
    if (m_outcome != nullptr)
        described["last"] = m_outcome;
    return described;
}

bool Scans::Reset() {
    m_timer.Stop();
    m_running = Running::Nothing;
    m_services.clear();
    m_place = 0;
    m_visited = INVALID_SERVICE_ID;
    m_outcome = nullptr;
    m_pace = kDefaultPace;
    return true;
}

} // namespace sim
