#include "SessionInterface.h"

#include <string>

#include "Client.h"
#include "Results.h"

namespace sim {

namespace {

// Per client; a program that leaks its objects must not use up the TV's memory.
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
    if (call.client.GetSessionCount() >= kMaxSessions)
        return out.Int(0, m_log.Refuse(kTooMany, kOwnTag, "client %u already has %zu sessions", call.client.GetNumber(),
                                       call.client.GetSessionCount()));
    std::int32_t status = 0;
    const Session* session =
        m_sessions.Open(*interface, profile, static_cast<std::uint16_t>(screen), call.client, status);
    out.Int(0, status);
    if (session != nullptr)
        out.UInt(1, session->id);
}

void SessionInterface::Close(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const std::uint32_t id = in.UInt(1);
    if (!m_sessions.Close(id, call.client))
        return out.Int(0, m_log.Refuse(kUnknown, kOwnTag, "client %u has no session %u", call.client.GetNumber(), id));
    out.Int(0, kDone);
}

} // namespace sim
