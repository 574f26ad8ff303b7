#include "SessionInterface.h"

#include <string>

#include "Client.h"
#include "Results.h"

namespace sim {

namespace {

// Per client; a program that leaks its objects does not use up the TV's memory. It does not lose those
// that it uses, and factories do not fail: the console does not check what they return.
constexpr std::size_t kMaxSessions = 4096;

} // namespace

SessionInterface::SessionInterface(const Dispatcher& dispatcher, Sessions& sessions, Log& log)
    : Interface(interfaces::kTable<interfaces::NorvexSessionMethod>, Calls::ToInterface), m_dispatcher(dispatcher),
      m_sessions(sessions), m_log(log) {
    Add(interfaces::NorvexSessionMethod::Open,
        {Out("status", kInt), Out("session", kUInt), In("interface", kText), In("profile", kInt), In("screen", kInt)},
        &SessionInterface::Open);
    Add(interfaces::NorvexSessionMethod::Close, {Out("status", kInt), In("session", kUInt)}, &SessionInterface::Close);
}

void SessionInterface::Open(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const std::string name(in.Text(2));
    const std::int32_t profile = in.Int(3);
    const std::int32_t screen = in.Int(4);
    Interface* interface = m_dispatcher.Find(name);
    if (interface == nullptr || interface->GetCalls() != Calls::ToSession)
        return out.Int(0, m_log.Refuse(kUnknown, kOwnTag, "unknown interface %s", name.c_str()));
    if (screen < 0 || screen > UINT16_MAX)
        return out.Int(0, m_log.Refuse(kBadArgument, kOwnTag, "%s: unknown screen %d", name.c_str(), screen));
    std::int32_t status = 0;
    const Session* session =
        m_sessions.Open(*interface, profile, static_cast<std::uint16_t>(screen), call.client, status);
    out.Int(0, status);
    if (session == nullptr)
        return;
    out.UInt(1, session->id);
    if (call.client.GetSessionCount() <= kMaxSessions)
        return;
    if (const Session* unused = Sessions::FindLongestUnused(call.client)) {
        m_log.Write(kOwnTag, "client %u has more than %zu sessions: session %u, unused the longest, is closed",
                    call.client.GetNumber(), kMaxSessions, unused->id);
        m_sessions.Close(unused->id, call.client);
    }
}

void SessionInterface::Close(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const std::uint32_t id = in.UInt(1);
    if (!m_sessions.Close(id, call.client))
        return out.Int(0, m_log.Refuse(kUnknown, kOwnTag, "client %u has no session %u", call.client.GetNumber(), id));
    out.Int(0, kDone);
}

} // namespace sim
