#pragma once

#include <chrono>
#include <cstdint>
#include <map>

#include "Component.h"
#include "Context.h"
#include "Inputs.h"
#include "Pipeline.h"
#include "Subscribers.h"

namespace sim {

// All pipelines of the TV, and what happens in them when a service is tuned.
//
// A pipeline is there while someone has a session with it, and as long as it differs from a new
// one; the main one always.
class Pipelines : public Component {
public:
    static constexpr std::size_t kMaxPipelines = 1024;

    Pipelines(Context& context, LineUp& lineUp, Inputs& inputs, Subscribers& subscribers);

    // The pipeline, made if need be. Stays valid while it has a session, and the main one's always.
    Pipeline& At(const Handle& handle);
    const std::map<Handle, Pipeline>& GetAll() const { return m_pipelines; }

    // A session with a pipeline begins and ends. False: there are too many pipelines.
    bool Hold(const Handle& handle);
    void Release(const Handle& handle);

    // Whether a pipeline that is (about to be) in that antenna mode can show the service: kDone, or
    // a refusal, which is in the log then.
    std::int32_t CheckService(const Pipeline& pipeline, const char* operation,
                              std::uint64_t service, std::int32_t antenna);
    // Shows it now. Who may ask for it to wait is the preparation's affair.
    void Perform(const Handle& handle, const Change& change);

    // Moves a pipeline's tuner without a change of what it shows: a scan does.
    void MoveTuner(Pipeline& pipeline, const Transponder& transponder);
    // Whether the tuner of the pipeline has a signal where it stands.
    bool HasSignal(const Pipeline& pipeline) const;
    bool HasCaptions(const Pipeline& pipeline) const;

    // The main picture fills the screen again.
    void ResetMainPicture(const Handle& handle);

    // Marks the event as seen now.
    void NoteEvent(Pipeline& pipeline, ESIEvent event);

    // Another line-up: services that are not in it are shown no longer.
    void LineUpChanged();
    // Signals, captions or inputs may have changed.
    void SurroundingsChanged();

    const char* GetStateName() const override { return "pipelines"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;

private:
    void DropIfUnused(const Pipeline& pipeline);
    void SetSource(Pipeline& pipeline, std::int32_t source);
    void Tune(Pipeline& pipeline, std::uint64_t service);
    void UpdateReception(Pipeline& pipeline);
    nlohmann::json Describe(const Pipeline& pipeline) const;

    Context& m_context;
    Log& m_log;
    LineUp& m_lineUp;
    Inputs& m_inputs;
    Subscribers& m_subscribers;
    std::chrono::steady_clock::time_point m_start;
    std::map<Handle, Pipeline> m_pipelines;
};

} // namespace sim
