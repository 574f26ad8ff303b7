#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include <norvex/client/PipelineUtility.h>

#include "Component.h"
#include "Context.h"
#include "Pipelines.h"

namespace sim {

// Delays a change of a pipeline's source or service until every receiver registered for that kind
// of change is ready, or a limit has passed; then makes the change. A newer change replaces a
// pending one.
//
// Readiness may be set before the change is requested, and the change uses it up. A receiver is a
// name that a client has registered for a kind: it stays until the client unregisters it or is
// released, independently of the session used to register it.
class Preparation : public Component {
public:
    static constexpr std::uint32_t kDefaultLimit = 10000; // milliseconds

    Preparation(Context& context, Pipelines& pipelines);

    // Makes the change, at once or when all receivers are ready. Its arguments have been checked.
    void Request(const Handle& handle, const Change& change);
    bool IsPending(const Handle& handle, EStateChangeType type) const;
    // The pending change; null: none.
    const Change* GetPending(const Handle& handle) const;

    // Each returns kDone or a refusal, which has been logged.
    std::int32_t Register(const Handle& handle, EStateChangeType type, const std::string& name, std::int32_t option,
                          const Client& client);
    std::int32_t Unregister(const Handle& handle, EStateChangeType type, const std::string& name, const Client& client);
    // `state` 1: ready for the change to `service` (all bits set: to any); else not ready.
    std::int32_t SetState(const Handle& handle, EStateChangeType type, const std::string& name, std::int32_t state,
                          std::uint64_t service, const Client& client);

    const char* GetStateName() const override { return "preparation"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;
    void ReleaseClient(Client& client) override;

private:
    struct ReceiverKey {
        EStateChangeType type;
        std::uint32_t client;
        std::string name;

        auto operator<=>(const ReceiverKey&) const = default;
    };
    struct Receiver {
        std::int32_t option = 0;
        std::int32_t state = 0;
        std::uint64_t service = 0; // for which the state is set
    };
    // Of one pipeline with receivers.
    struct Queue {
        std::map<ReceiverKey, Receiver> receivers;
        std::optional<Change> pending;
        Timer limit;
    };

    static bool Concerns(const Change& change, EStateChangeType type);
    static bool IsReady(const Receiver& receiver, const Change& change);
    static bool IsHeld(const Queue& queue, const Change& change);
    // Makes the pending change if no receiver delays it any longer.
    void Check(const Handle& handle, Queue& queue);
    void Perform(const Handle& handle, Queue& queue, const char* why);
    void LimitPassed(const Handle& handle);
    // Writes who delays the change, for the debug menu.
    void NoteReceivers(const Handle& handle, const Queue& queue, const Change& change);
    std::int32_t Refuse(const Handle& handle, const char* what, const std::string& name, std::int32_t result) const;
    static nlohmann::json Describe(const Queue& queue);

    Context& m_context;
    Pipelines& m_pipelines;
    std::uint32_t m_limit = kDefaultLimit;
    std::map<Handle, Queue> m_queues;
    std::map<std::uint32_t, std::size_t> m_receivers; // of each client, on all pipelines
};

} // namespace sim
