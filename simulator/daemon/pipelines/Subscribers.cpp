#include "Subscribers.h"

#include <cinttypes>

#include <nlohmann/json.hpp>

#include "Results.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::size_t kMaxTypes = 256; // per session

} // namespace

Subscribers::Subscribers(Context& context)
    : Interface(interfaces::kTable<interfaces::SignalSubscriberMethod>, Calls::ToSession), m_context(context) {
    Add(interfaces::SignalSubscriberMethod::Subscribe,
        {Out("status", kInt), In("type", kInt), In("mode", kInt), In("filter", kInt), In("profile", kInt),
         In("screen", kInt)},
        &Subscribers::Subscribe);
    Add(interfaces::SignalSubscriberMethod::Unsubscribe,
        {Out("status", kInt), In("type", kInt), In("filter", kInt), In("profile", kInt), In("screen", kInt)},
        &Subscribers::Unsubscribe);
}

std::int32_t Subscribers::OpenSession(Session& session) {
    m_context.changes.Mark("/subscribers");
    m_subscribers[session.id].client = session.client->GetNumber();
    return 0;
}

void Subscribers::CloseSession(Session& session) {
    m_context.changes.Mark("/subscribers");
    m_subscribers.erase(session.id);
}

void Subscribers::Subscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const std::int32_t type = in.Int(1);
    auto& counts = m_subscribers.at(call.session->id).counts;
    if (!counts.contains(type) && counts.size() >= kMaxTypes)
        return out.Int(0,
                       m_context.log.Refuse(kTooMany, kOwnTag, "Subscribe refused: %zu types already", counts.size()));
    m_context.changes.Mark("/subscribers");
    const std::uint32_t count = ++counts[type];
    m_context.log.Write(kOwnTag,
                        "signal %d: session %" PRIu32 " subscribed %" PRIu32
                        " times (mode %d, filter %d, profile %d, screen %d)",
                        type, call.session->id, count, in.Int(2), in.Int(3), in.Int(4), in.Int(5));
    out.Int(0, kDone);
}

void Subscribers::Unsubscribe(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const std::int32_t type = in.Int(1);
    auto& counts = m_subscribers.at(call.session->id).counts;
    const auto found = counts.find(type);
    if (found == counts.end())
        return out.Int(
            0, m_context.log.Refuse(kRefused, kOwnTag, "Unsubscribe refused: not subscribed to signal %d", type));
    m_context.changes.Mark("/subscribers");
    const std::uint32_t left = --found->second;
    if (left == 0)
        counts.erase(found);
    m_context.log.Write(
        kOwnTag, "signal %d: session %" PRIu32 " subscribed %" PRIu32 " times (filter %d, profile %d, screen %d)", type,
        call.session->id, left, in.Int(2), in.Int(3), in.Int(4));
    out.Int(0, kDone);
}

bool Subscribers::Send(std::uint32_t session, const Signals::Signal& signal, std::uint64_t number) {
    const bool sent = m_context.signals.Send(session, signal, number);
    m_context.log.WriteDebug(Debug::SignalQueue, "signal %d, number %" PRIu64 ", to session %" PRIu32 ": %s",
                             signal.type, number, session, sent ? "sent" : "no connection");
    return sent;
}

void Subscribers::Emit(std::int32_t type, const Handle& handle, std::uint64_t data) {
    m_context.changes.Mark("/daemon/signals");
    const std::uint64_t number = m_context.signals.TakeNumber();
    const Signals::Signal signal{type, handle.profile, handle.screen, data};
    std::size_t sent = 0;
    for (const auto& [session, subscriber] : m_subscribers) {
        if (subscriber.counts.contains(type))
            sent += Send(session, signal, number);
    }
    m_context.log.Write(kOwnTag, "signal %d of pipeline %s to %zu", type, handle.ToText().c_str(), sent);
}

std::size_t Subscribers::SendToAll(const Signals::Signal& signal) {
    m_context.changes.Mark("/daemon/signals");
    const std::uint64_t number = m_context.signals.TakeNumber();
    std::size_t sent = 0;
    for (const auto& [session, subscriber] : m_subscribers)
        sent += Send(session, signal, number);
    return sent;
}

json Subscribers::DescribeState() const {
    json described = json::array();
    for (const auto& [session, subscriber] : m_subscribers) {
        json counts = json::object();
        for (const auto& [type, count] : subscriber.counts)
            counts[std::to_string(type)] = count;
        described.push_back({{"session", session},
                             {"client", subscriber.client},
                             {"connected", m_context.signals.IsAttached(session)},
                             {"subscriptions", counts}});
    }
    return described;
}

bool Subscribers::Reset() {
    for (auto& [session, subscriber] : m_subscribers)
        subscriber.counts.clear();
    return true;
}

} // namespace sim
