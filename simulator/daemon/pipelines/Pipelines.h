#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "Component.h"
#include "Context.h"
#include "Inputs.h"
#include "Pipeline.h"
#include "Subscribers.h"

namespace sim {

// All pipelines of the TV, and the tuning of services.
//
// A pipeline exists while it has a session or a receiver, or its state differs from that of a new one;
// the main one always exists. When there are too many, one without session and receiver is forgotten.
class Pipelines : public Component {
public:
    static constexpr std::size_t kMaxPipelines = 1024;

    Pipelines(Context& context, LineUp& lineUp, Inputs& inputs, Subscribers& subscribers);

    // The pipeline, created if needed, to be changed: it is marked as changed. Valid while it has a
    // session; the main one always.
    Pipeline& At(const Handle& handle);
    // It must exist.
    const Pipeline& Get(const Handle& handle) const { return m_pipelines.at(handle); }
    const std::map<Handle, Pipeline>& GetAll() const { return m_pipelines; }

    // Begin and end of a session of a pipeline. False: there are too many pipelines.
    bool Hold(const Handle& handle);
    void Release(const Handle& handle);
    // Whether a pipeline is needed without a session.
    void SetHoldCheck(std::function<bool(const Handle&)> isHeld) { m_isHeld = std::move(isHeld); }
    // A session or what else held it has ended.
    void DropIfUnused(const Handle& handle);

    // Whether a pipeline in that antenna mode could show the service: kDone, or a refusal, which
    // has been logged.
    std::int32_t CheckService(const Pipeline& pipeline, const char* operation, std::uint64_t service,
                              std::int32_t antenna);
    // Shows it now; Preparation delays changes for receivers.
    void Perform(const Handle& handle, const Change& change);

    // Lends a pipeline's tuner to a scan, which moves it; nothing: back again. What the pipeline
    // shows stays the same, but is received only from the tuner's transponder. Tuning takes the
    // tuner back.
    void LendTuner(Pipeline& pipeline, const std::optional<Transponder>& transponder);
    // Whether the pipeline's tuner has a signal.
    bool HasSignal(const Pipeline& pipeline) const;
    bool HasCaptions(const Pipeline& pipeline) const;

    // Makes the main picture fill the screen again.
    void ResetMainPicture(const Handle& handle);

    // Marks the event as seen now.
    void NoteEvent(Pipeline& pipeline, ESIEvent event);
    // Write the state of the decoders, and the number of shown frames, for the debug menu.
    void NoteVideo(const Pipeline& pipeline);
    void NoteAudio(const Pipeline& pipeline);
    void NoteFrames(const Pipeline& pipeline);

    // The line-up has been replaced: services that are not in it are no longer shown or remembered.
    void LineUpChanged();
    // Signals, captions or inputs may have changed.
    void SurroundingsChanged();

    const char* GetStateName() const override { return "pipelines"; }
    nlohmann::json DescribeState() const override;
    nlohmann::json DescribeValue(const std::string& name) const override;
    bool Reset() override;
    void ReleaseClient(Client& client) override;

private:
    void Mark(const Handle& handle);
    bool IsHeld(const Pipeline& pipeline) const;
    // Makes room for one more; false if all of them are held.
    bool ForgetOne();
    // Calls `visit` with each pipeline, which is dropped if it is unused afterwards.
    template <class F> void ForEach(F&& visit);
    // Nothing if the line-up does not have the service on that antenna.
    std::optional<ServiceFacts> FindFacts(std::uint64_t service, std::int32_t antenna);
    // Removes remembered services that the line-up no longer has.
    void ForgetMissing(Pipeline& pipeline);
    // Ends the analysis of those inputs for which `ends` is true, with their client.
    template <class F> void EndAnalysis(Pipeline& pipeline, F&& ends, const char* why);
    void SetSource(Pipeline& pipeline, std::int32_t source);
    void Tune(Pipeline& pipeline, std::uint64_t service);
    void MoveTuner(Pipeline& pipeline, const Transponder& own, const std::optional<Transponder>& lent);
    void UpdateReception(Pipeline& pipeline);
    void SetReceiving(Pipeline& pipeline, bool receives);
    void NoteLock(const Pipeline& pipeline);
    std::uint64_t GetMilliseconds() const; // since the daemon's start
    nlohmann::json Describe(const Pipeline& pipeline) const;

    Context& m_context;
    Log& m_log;
    LineUp& m_lineUp;
    Inputs& m_inputs;
    Subscribers& m_subscribers;
    std::chrono::steady_clock::time_point m_start;
    std::function<bool(const Handle&)> m_isHeld;
    std::map<Handle, Pipeline> m_pipelines;
};

} // namespace sim
