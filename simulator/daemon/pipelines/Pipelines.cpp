#include "Pipelines.h"

#include <algorithm>
#include <cinttypes>
#include <iterator>
#include <utility>

#include <norvex/client/Signal.h>
#include <norvex/client/Source.h>

#include "Results.h"

namespace sim {

namespace {

// Of each pipeline, with their latest services.
constexpr std::size_t kMaxTvModes = 64;

} // namespace

Pipelines::Pipelines(Context& context, LineUp& lineUp, Inputs& inputs, Subscribers& subscribers)
    : m_context(context), m_log(context.log), m_lineUp(lineUp), m_inputs(inputs), m_subscribers(subscribers),
      m_start(std::chrono::steady_clock::now()) {
    At(kMainPipeline);
    m_inputs.SetListener([this] { SurroundingsChanged(); });
}

Pipeline& Pipelines::At(const Handle& handle) {
    Mark(handle);
    return m_pipelines.try_emplace(handle, handle).first->second;
}

void Pipelines::Mark(const Handle& handle) {
    if (m_context.changes.IsWatched())
        m_context.changes.Mark("/pipelines/" + handle.ToText());
}

bool Pipelines::Hold(const Handle& handle) {
    if (!m_pipelines.contains(handle) && m_pipelines.size() >= kMaxPipelines && !ForgetOne()) {
        m_log.Write(kOwnTag, "pipeline %s refused: there are %zu already", handle.ToText().c_str(), m_pipelines.size());
        return false;
    }
    ++At(handle).sessions;
    return true;
}

void Pipelines::Release(const Handle& handle) {
    --At(handle).sessions;
    DropIfUnused(handle);
}

bool Pipelines::IsHeld(const Pipeline& pipeline) const {
    return pipeline.sessions > 0 || pipeline.handle == kMainPipeline || (m_isHeld && m_isHeld(pipeline.handle));
}

void Pipelines::DropIfUnused(const Handle& handle) {
    const auto found = m_pipelines.find(handle);
    if (found == m_pipelines.end() || !found->second.IsAsNew() || IsHeld(found->second))
        return;
    Mark(found->first);
    m_pipelines.erase(found);
}

bool Pipelines::ForgetOne() {
    const auto found = std::find_if(m_pipelines.begin(), m_pipelines.end(),
                                    [this](const auto& entry) { return !IsHeld(entry.second); });
    if (found == m_pipelines.end())
        return false;
    m_log.Write(kOwnTag, "pipeline %s forgotten: there are %zu, and it has no session", found->second.name.c_str(),
                m_pipelines.size());
    Mark(found->first);
    m_pipelines.erase(found);
    return true;
}

template <class F> void Pipelines::ForEach(F&& visit) {
    for (auto next = m_pipelines.begin(); next != m_pipelines.end();) {
        Pipeline& pipeline = (next++)->second;
        Mark(pipeline.handle);
        visit(pipeline);
        DropIfUnused(Handle(pipeline.handle));
    }
}

std::int32_t Pipelines::CheckService(const Pipeline& pipeline, const char* operation, std::uint64_t service,
                                     std::int32_t antenna) {
    if (service == INVALID_SERVICE_ID)
        return m_log.Refuse(kBadArgument, kTunerTag, "pipeline %s: %s refused: the invalid service",
                            pipeline.name.c_str(), operation);
    const auto facts = m_lineUp.FindFacts(service);
    if (!facts)
        return m_log.Refuse(kUnknown, kTunerTag, "pipeline %s: %s refused: unknown service 0x%" PRIx64,
                            pipeline.name.c_str(), operation, service);
    if (facts->antenna >= 0 && facts->antenna != antenna)
        return m_log.Refuse(kRefused, kTunerTag,
                            "pipeline %s: %s refused: service 0x%" PRIx64 " belongs to antenna %s, not %s",
                            pipeline.name.c_str(), operation, service, ToAntennaName(facts->antenna).c_str(),
                            ToAntennaName(antenna).c_str());
    return kDone;
}

void Pipelines::Perform(const Handle& handle, const Change& change) {
    Pipeline& pipeline = At(handle);
    m_log.WriteDebug(Debug::ChannelChange,
                     "pipeline %s: call #%" PRIu64 ", source %d to %d, service 0x%" PRIx64 " to 0x%" PRIx64,
                     pipeline.name.c_str(), change.sequence, pipeline.source, change.source.value_or(pipeline.source),
                     pipeline.service, change.service.value_or(pipeline.service));
    if (change.source || change.service)
        pipeline.preparedLast = std::exchange(pipeline.preparedNext, {});
    if (change.tvMode && *change.tvMode != pipeline.tvMode) {
        pipeline.tvMode = *change.tvMode;
        m_log.Write(kTunerTag, "pipeline %s: antenna %s, service mode %d", pipeline.name.c_str(),
                    ToAntennaName(pipeline.tvMode.antenna).c_str(), pipeline.tvMode.serviceMode);
    }
    if (change.source)
        SetSource(pipeline, *change.source);
    if (change.service)
        Tune(pipeline, *change.service);
    UpdateReception(pipeline);
    DropIfUnused(handle);
}

void Pipelines::SetSource(Pipeline& pipeline, std::int32_t source) {
    pipeline.source = source;
    m_log.Write("extvideosrc", "pipeline %s: picture from source %d", pipeline.name.c_str(), source);
    m_log.Write("extaudiosrc", "pipeline %s: sound from source %d", pipeline.name.c_str(), source);
    if (Inputs::IsHdmi(source))
        m_log.WriteDebug(Debug::HdmiInput, "pipeline %s: source %d is %s", pipeline.name.c_str(), source,
                         m_inputs.IsPlugged(source) ? "plugged" : "unplugged");
}

std::optional<ServiceFacts> Pipelines::FindFacts(std::uint64_t service, std::int32_t antenna) {
    auto facts = m_lineUp.FindFacts(service);
    if (facts && facts->antenna >= 0 && facts->antenna != antenna)
        facts.reset();
    return facts;
}

void Pipelines::Tune(Pipeline& pipeline, std::uint64_t service) {
    const auto facts = FindFacts(service, pipeline.tvMode.antenna);
    // Information and captions of the last service are discarded.
    SetReceiving(pipeline, false);
    pipeline.captions = false;
    pipeline.facts = facts.value_or(ServiceFacts{});
    pipeline.service = facts ? service : INVALID_SERVICE_ID;
    if (!facts) {
        // No service has been shown in that TV mode, or the line-up no longer has it.
        m_log.Write(kTunerTag, "pipeline %s: no service", pipeline.name.c_str());
        MoveTuner(pipeline, {pipeline.tvMode.antenna, 0}, {});
        return;
    }
    Latest& latest = pipeline.latest[pipeline.tvMode];
    (facts->streamed ? latest.streamed : latest.broadcast) = service;
    if (pipeline.latest.size() > kMaxTvModes) {
        auto forgotten = std::prev(pipeline.latest.end());
        if (forgotten->first == pipeline.tvMode)
            --forgotten;
        m_log.Write(kTunerTag, "pipeline %s: forgets the latest services of antenna %s, service mode %d: %zu TV modes",
                    pipeline.name.c_str(), ToAntennaName(forgotten->first.antenna).c_str(),
                    forgotten->first.serviceMode, pipeline.latest.size());
        pipeline.latest.erase(forgotten);
    }
    if (facts->streamed) {
        m_log.Write("quarle-provider", "pipeline %s: streams service 0x%" PRIx64, pipeline.name.c_str(), service);
        return;
    }
    m_log.Write(kTunerTag, "pipeline %s: tuned to service 0x%" PRIx64, pipeline.name.c_str(), service);
    MoveTuner(pipeline, {pipeline.tvMode.antenna, facts->frequency}, {});
}

void Pipelines::MoveTuner(Pipeline& pipeline, const Transponder& own, const std::optional<Transponder>& lent) {
    const Transponder before = pipeline.GetTuner();
    pipeline.tuner = own;
    pipeline.lentTuner = lent;
    if (pipeline.GetTuner() == before)
        return;
    m_log.Write(kTunerTag, "pipeline %s: tuner at %s", pipeline.name.c_str(), pipeline.GetTuner().ToText().c_str());
    NoteLock(pipeline);
}

void Pipelines::NoteLock(const Pipeline& pipeline) {
    m_log.WriteDebug(Debug::TunerLock, "pipeline %s: %s at %s", pipeline.name.c_str(),
                     HasSignal(pipeline) ? "locked" : "no lock", pipeline.GetTuner().ToText().c_str());
}

void Pipelines::LendTuner(Pipeline& pipeline, const std::optional<Transponder>& transponder) {
    MoveTuner(pipeline, pipeline.tuner, transponder);
    UpdateReception(pipeline);
}

bool Pipelines::HasSignal(const Pipeline& pipeline) const {
    return m_inputs.HasSignal(pipeline.GetTuner());
}

bool Pipelines::HasCaptions(const Pipeline& pipeline) const {
    return m_inputs.HasCaptions(pipeline.receiving && pipeline.facts.captions);
}

void Pipelines::ResetMainPicture(const Handle& handle) {
    Pipeline& pipeline = At(handle);
    pipeline.mainPicture.reset();
    DropIfUnused(handle);
}

void Pipelines::NoteEvent(Pipeline& pipeline, ESIEvent event) {
    pipeline.events[event] = GetMilliseconds();
}

std::uint64_t Pipelines::GetMilliseconds() const {
    const auto since = std::chrono::steady_clock::now() - m_start;
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
}

void Pipelines::NoteVideo(const Pipeline& pipeline) {
    m_log.WriteDebug(Debug::VideoDecoder, "pipeline %s: %s, mute %d, video only %s, %" PRIu32 " restarts",
                     pipeline.name.c_str(), pipeline.receiving ? "decoding" : "idle", pipeline.videoMute,
                     pipeline.dtvModes.video ? "on" : "off", pipeline.decoderRestarts);
}

void Pipelines::NoteAudio(const Pipeline& pipeline) {
    m_log.WriteDebug(Debug::AudioDecoder, "pipeline %s: %s, mute %d, audio only %s", pipeline.name.c_str(),
                     pipeline.receiving ? "decoding" : "idle", pipeline.audioMute,
                     pipeline.dtvModes.audio ? "on" : "off");
}

void Pipelines::NoteFrames(const Pipeline& pipeline) {
    constexpr std::uint64_t kFrameMilliseconds = 20;
    const auto started = pipeline.events.find(SI_EVENT_STARTED);
    if (started != pipeline.events.end())
        m_log.WriteDebug(Debug::Frames, "pipeline %s: %" PRIu64 " frames since its service is received, QoS %s",
                         pipeline.name.c_str(), (GetMilliseconds() - started->second) / kFrameMilliseconds,
                         m_log.GetDebug().qos ? "on" : "off");
}

// What a pipeline receives depends on its settings and on the TV's environment.
void Pipelines::UpdateReception(Pipeline& pipeline) {
    const Transponder itsOwn{pipeline.tvMode.antenna, pipeline.facts.frequency};
    const bool receives = pipeline.source == SOURCE_TV && pipeline.service != INVALID_SERVICE_ID &&
                          (pipeline.facts.streamed || (pipeline.GetTuner() == itsOwn && HasSignal(pipeline)));
    SetReceiving(pipeline, receives);
    const bool captions = HasCaptions(pipeline);
    if (captions != pipeline.captions)
        m_log.WriteDebug(Debug::Captions, "pipeline %s: captions %s", pipeline.name.c_str(),
                         captions ? "received" : "stopped");
    if (captions && !pipeline.captions)
        NoteEvent(pipeline, SI_EVENT_CAPTIONS);
    pipeline.captions = captions;
}

void Pipelines::SetReceiving(Pipeline& pipeline, bool receives) {
    if (receives == pipeline.receiving)
        return;
    pipeline.receiving = receives;
    const char* name = pipeline.name.c_str();
    m_log.Write("tvdemuxer", "pipeline %s: service information %s", name, receives ? "received" : "stopped");
    m_log.Write("tvaudiodec", "pipeline %s: sound of service 0x%" PRIx64 " %s", name, pipeline.service,
                receives ? "decoded" : "stopped");
    m_log.Write("tvdrmsink", "pipeline %s: service 0x%" PRIx64 " %s", name, pipeline.service,
                receives ? "is not encrypted" : "stopped");
    m_log.WriteDebug(Debug::SectionFilter, "pipeline %s: filters of service 0x%" PRIx64 " %s", name, pipeline.service,
                     receives ? "opened" : "closed");
    NoteVideo(pipeline);
    NoteAudio(pipeline);
    if (receives) {
        NoteEvent(pipeline, SI_EVENT_STARTED);
        m_subscribers.Emit(SIGNAL_SI_STARTED, pipeline.handle, ToSignalData(pipeline.facts));
    }
    NoteFrames(pipeline);
}

void Pipelines::LineUpChanged() {
    ForEach([this](Pipeline& pipeline) {
        ForgetMissing(pipeline);
        if (pipeline.service == INVALID_SERVICE_ID ||
            FindFacts(pipeline.service, pipeline.tvMode.antenna) == pipeline.facts)
            return;
        Tune(pipeline, pipeline.service);
        UpdateReception(pipeline);
    });
}

void Pipelines::ForgetMissing(Pipeline& pipeline) {
    for (auto& [tvMode, latest] : pipeline.latest) {
        const auto broadcast = FindFacts(latest.broadcast, tvMode.antenna);
        if (!broadcast || broadcast->streamed)
            latest.broadcast = INVALID_SERVICE_ID;
        const auto streamed = FindFacts(latest.streamed, tvMode.antenna);
        if (!streamed || !streamed->streamed)
            latest.streamed = INVALID_SERVICE_ID;
    }
    std::erase_if(pipeline.latest, [](const auto& entry) { return entry.second == Latest(); });
    if (!pipeline.preview || pipeline.preview->service == INVALID_SERVICE_ID ||
        m_lineUp.FindFacts(pipeline.preview->service))
        return;
    pipeline.preview->service = INVALID_SERVICE_ID;
    m_log.Write("extvideosrc", "pipeline %s: preview of no service", pipeline.name.c_str());
}

void Pipelines::SurroundingsChanged() {
    ForEach([this](Pipeline& pipeline) {
        NoteLock(pipeline);
        UpdateReception(pipeline);
        EndAnalysis(
            pipeline, [this](std::int32_t source, std::uint32_t) { return !m_inputs.IsPlugged(source); },
            "was unplugged");
    });
}

void Pipelines::ReleaseClient(Client& client) {
    ForEach([&](Pipeline& pipeline) {
        EndAnalysis(
            pipeline, [&](std::int32_t, std::uint32_t owner) { return owner == client.GetNumber(); },
            "has lost its client");
    });
}

template <class F> void Pipelines::EndAnalysis(Pipeline& pipeline, F&& ends, const char* why) {
    std::erase_if(pipeline.hdmiAnalysis, [&](const auto& analysis) {
        if (!ends(analysis.first, analysis.second))
            return false;
        m_log.Write("extvideosrc", "pipeline %s: analysis ended, source %d %s", pipeline.name.c_str(), analysis.first,
                    why);
        return true;
    });
}

bool Pipelines::Reset() {
    for (auto entry = m_pipelines.begin(); entry != m_pipelines.end();) {
        static_cast<PipelineState&>(entry->second) = {};
        const bool needed = entry->second.sessions > 0 || entry->first == kMainPipeline;
        entry = needed ? std::next(entry) : m_pipelines.erase(entry);
    }
    return true;
}

} // namespace sim
