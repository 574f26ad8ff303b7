#pragma once

#include <cstdint>
#include <map>

#include "Component.h"
#include "Context.h"
#include "Handle.h"
#include "Interface.h"

namespace sim {

// ISignalSubscriber: subscriptions to signals. A session is one registered callback.
// Subscriptions are counted per session and signal type, and end with the session.
//
// This TV does not restrict a subscription: mode, filter, profile and screen are only logged.
class Subscribers : public Interface, public Component {
public:
    explicit Subscribers(Context& context);

    // Sends one of the TV's own signals to the sessions that have subscribed to its type.
    void Emit(std::int32_t type, const Handle& handle, std::uint64_t data);
    // Sends to every registered callback. Returns the number of receivers.
    std::size_t SendToAll(const Signals::Signal& signal);

    std::int32_t OpenSession(Session& session) override;
    void CloseSession(Session& session) override;

    const char* GetStateName() const override { return "subscribers"; }
    nlohmann::json DescribeState() const override;
    // Removes all subscriptions; the callbacks stay registered.
    bool Reset() override;

private:
    struct Subscriber {
        std::uint32_t client = 0;
        std::map<std::int32_t, std::uint32_t> counts; // by type, above 0
    };

    void Subscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    bool Send(std::uint32_t session, const Signals::Signal& signal, std::uint64_t number);
    void Unsubscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    Context& m_context;
    std::map<std::uint32_t, Subscriber> m_subscribers; // by session
};

} // namespace sim
