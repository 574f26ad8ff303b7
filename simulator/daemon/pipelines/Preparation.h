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

// Holds a change of a pipeline's source or service until every receiver that is registered for that
// kind of change has said that it is ready for it, or a limit has passed; then it happens. A newer
// change takes the place of one that waits.
//
// Readiness may be told before the change is asked for, and is used up by it. A receiver is a name
// that a client has registered for a kind: it stays until the client unregisters it or is gone,
// whatever becomes of the sessions that it was registered through.
class Preparation : public Component {
public:
    static constexpr std::uint32_t kDefaultLimit = 10000; // milliseconds

    Preparation(Context& context, Pipelines& pipelines);

    // Makes the change, at once or when everybody is ready. What it names has been checked.
    void Request(const Handle& handle, const Change& change);
    bool IsPending(const Handle& handle, EStateChangeType type) const;
    // The change that waits; null: none.
    const Change* GetPending(const Handle& handle) const;

    // Each answers kDone or a refusal, which is in the log then.
    std::int32_t Register(const Handle& handle, EStateChangeType type, const std::string& name,
                          std::int32_t option, const Client& client);
    std::int32_t Unregister(const Handle& handle, EStateChangeType type, const std::string& name,
                            const Client& client);
    // `state` 1: ready for the change to `service`, all bits set: to any; else not ready.
    std::int32_t SetState(const Handle& handle, EStateChangeType type, const std::string& name,
                          std::int32_t state, std::uint64_t service, const Client& client);

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
        std::uint64_t service = 0; // that the state is of
    };
    // Of one pipeline that has receivers.
    struct Queue {
        std::map<ReceiverKey, Receiver> receivers;
        std::optional<Change> pending;
        Timer limit;
    };

    static bool Concerns(const Change& change, EStateChangeType type);
    static bool IsReady(const Receiver& receiver, const Change& change);
    static bool IsHeld(const Queue& queue, const Change& change);
    // Makes the pending change if nothing holds it any more.
    void Check(const Handle& handle, Queue& queue);
    void Perform(const Handle& handle, Queue& queue, const char* why);
    void LimitPassed(const Handle& handle);
    std::int32_t Refuse(const Handle& handle, const char* what, const std::string& name,
                        std::int32_t result) const;
    static nlohmann::json Describe(const Queue& queue);

    Context& m_context;
    Pipelines& m_pipelines;
    std::uint32_t m_limit = kDefaultLimit;
    std::map<Handle, Queue> m_queues;
};

} // namespace sim
