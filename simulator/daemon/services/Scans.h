#pragma once

#include <cstdint>
#include <optional>
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

// Scans that collect programmes with the main pipeline's tuner; one at a time.
//
// A tune around visits services one after the other. A visit moves the tuner to the service's
// transponder, sends SIGNAL_SI_STARTED, and after the pace SIGNAL_TUNE_AROUND_SERVICE_DONE; then
// the service's present programme is known. Each is sent only if the service is received at that
// time: the line-up has it, the tuner is still on its transponder, and there is a signal. At the
// end it sends SIGNAL_TUNE_AROUND_FINISHED.
//
// A barker channel scan visits the antenna's barker channel, collects the programmes of all
// services of that antenna, and ends with SIGNAL_BARKER_CHANNEL_TUNE.
//
// The pipeline's tuner is lent for the scan; a viewer who tunes meanwhile takes it back.
class Scans : public Component {
public:
    static constexpr std::uint32_t kDefaultPace = 200; // milliseconds per service
    // Services of a list that one call looks up; other clients wait meanwhile.
    static constexpr std::size_t kMaxLookUps = 100'000;

    Scans(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines, const Inputs& inputs,
          Subscribers& subscribers);

    // Each returns kDone or a refusal, which has been logged. The scan begins after the reply.
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
    // Runs `step` after a time, within an Event.
    void After(std::uint32_t milliseconds, void (Scans::*step)());

    void BeginVisit();
    void EndVisit();
    void BeginBarker();
    void EndBarker();
    void CollectSome();
    void NoteProgress();

    // Moves the tuner to the visited service; sends SIGNAL_SI_STARTED if it is received.
    void Visit(std::uint64_t service, const ServiceFacts& facts);
    // Why the service is not received from the tuner; null if it is. Nothing for an unknown service.
    const char* WhyNotReceived(const std::optional<ServiceFacts>& facts) const;
    // `outcome` is a word for the state.
    void Finish(ESignalType type, std::uint64_t data, const char* outcome);

    Context& m_context;
    ServiceLineUp& m_lineUp;
    Programmes& m_programmes;
    Pipelines& m_pipelines;
    const Inputs& m_inputs;
    Subscribers& m_subscribers;

    // The initial state.
    struct State {
        std::uint32_t pace = kDefaultPace;
        Running running = Running::Nothing;
        std::vector<std::uint64_t> services; // to be visited, or whose programmes are collected
        std::size_t place = 0;               // index of the current one
        std::size_t done = 0;                // received, and their programmes collected
        std::int32_t antenna = 0;            // of the barker channel
        std::uint64_t visited = INVALID_SERVICE_ID;
        const char* outcome = nullptr;
    };
    State m_state;
    Timer m_timer;
};

} // namespace sim
