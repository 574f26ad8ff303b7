#pragma once

#include <cstdint>
#include <map>

#include "Component.h"
#include "Context.h"
#include "Handle.h"
#include "Interface.h"

namespace sim {

// com.holvi.ISignalSubscriber: who is told of what. A session of it is one registered callback.
// Subscriptions are counted for each session and signal type, and end with the session.
//
// This TV does not narrow a subscription: mode, filter, profile and screen only stand in the log.
class Subscribers : public Interface, public Component {
public:
    explicit Subscribers(Context& context);

    // A signal of the TV's own: goes to the sessions that have subscribed to its type.
    void Emit(std::int32_t type, const Handle& handle, std::uint64_t data);
    // Goes to every registered callback. How many have got it.
    std::size_t SendToAll(const Signals::Signal& signal);

    std::int32_t OpenSession(Session& session) override;
    void CloseSession(Session& session) override;

    const char* GetStateName() const override { return "subscribers"; }
    nlohmann::json DescribeState() const override;
    // Nobody is subscribed to anything; the callbacks stay registered.
    bool Reset() override;

private:
    struct Subscriber {
        std::uint32_t client = 0;
        std::map<std::int32_t, std::uint32_t> counts; // by type, above 0
    };

    void Subscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Unsubscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    Context& m_context;
    std::map<std::uint32_t, Subscriber> m_subscribers; // by session
};

} // namespace sim
