#pragma once

#include <cstdint>
#include <vector>

#include <norvex/client/Signal.h>

#include "Component.h"
#include "Context.h"
#include "Inputs.h"
#include "Pipelines.h"
#include "Programmes.h"
#include "ServiceLineUp.h"
#include "Subscribers.h"

namespace sim {

// What collects programmes without the viewer, with the main pipeline's tuner; one at a time.
//
// Tune around visits services one after the other. A visit moves the tuner to the service's
// transponder, sends SIGNAL_SI_STARTED, and after the pace SIGNAL_TUNE_AROUND_SERVICE_DONE; the
// service's present programme is known then. Where there is no signal neither comes. At the end
// comes SIGNAL_TUNE_AROUND_FINISHED.
//
// A barker channel scan visits the antenna's barker channel, collects the programmes of all that
// comes over that antenna, and ends with SIGNAL_BARKER_CHANNEL_TUNE.
//
// Afterwards the tuner is where the pipeline's service is.
class Scans : public Component {
public:
    static constexpr std::uint32_t kDefaultPace = 200; // milliseconds for a service

    Scans(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines,
          const Inputs& inputs, Subscribers& subscribers);

    // Each answers kDone or a refusal, which is in the log then. What runs began after the answer.
    std::int32_t StartTuneAround(std::vector<std::uint64_t> services);
    std::int32_t StopTuneAround();
    std::int32_t StartBarker(std::int32_t antenna);
    std::int32_t StopBarker();

    const char* GetStateName() const override { return "scan"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;

private:
    enum class Running { Nothing, TuneAround, Barker };

    static const char* ToText(Running running);
    std::int32_t Start(Running what, std::vector<std::uint64_t> services);
    std::int32_t Stop(Running what);
    // Does `step` after a time, as an event of the TV's own.
    void After(std::uint32_t milliseconds, void (Scans::*step)());

    void BeginVisit();
    void EndVisit();
    void BeginBarker();
    void EndBarker();
    void CollectSome();

    // Moves the tuner to the service that is visited; SIGNAL_SI_STARTED when it comes in.
    void Visit(std::uint64_t service, const ServiceFacts& facts);
    bool HasSignal(const ServiceFacts& facts) const;
    // `outcome` is a word for the state.
    void Finish(ESignalType type, std::uint64_t data, const char* outcome);

    Context& m_context;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
    Pipelines& m_pipelines;
    const Inputs& m_inputs;
    Subscribers& m_subscribers;

    // As it is while nothing has run yet.
    struct State {
        std::uint32_t pace = kDefaultPace;
        Running running = Running::Nothing;
        std::vector<std::uint64_t> services; // to be visited, or whose programmes are collected
        std::size_t place = 0;               // in them
        std::int32_t antenna = 0;            // of the barker channel
        std::uint64_t visited = INVALID_SERVICE_ID;
        ServiceFacts facts;      // of the visited one
        Transponder tunerBefore; // where the tuner was
        const char* outcome = nullptr;
    };
    State m_state;
    Timer m_timer;
};

} // namespace sim
