#include "Signals.h"

#include <string>

#include <wire/Tree.h>

#include "Session.h"

namespace sim {

Signals::Signals(Sessions& sessions) : m_sessions(sessions) {
    m_sessions.AddHook([](const Session& session, bool opened) {
        if (!opened && session.signals != nullptr)
            session.signals->End({});
    });
}

bool Signals::Attach(std::uint32_t session, Connection& connection) {
    Session* served = m_sessions.Find(session);
    if (served == nullptr || served->client != connection.client)
        return false;
    if (served->signals != nullptr)
        served->signals->End("replaced by connection " + std::to_string(connection.GetNumber()));
    served->signals = &connection;
    connection.session = session;
    return true;
}

void Signals::Detach(const Connection& connection) {
    Session* served = m_sessions.Find(connection.session);
    if (served != nullptr && served->signals == &connection)
        served->signals = nullptr;
}

Connection* Signals::FindConnection(std::uint32_t session) const {
    const Session* served = m_sessions.Find(session);
    return served == nullptr ? nullptr : served->signals;
}

bool Signals::Send(std::uint32_t session, const Signal& signal, std::uint64_t number) {
    Connection* connection = FindConnection(session);
    if (connection == nullptr)
        return false;
    m_tree.Clear();
    wire::TreeWriter tree(m_tree);
    tree.PutValue(wire::kSignalType, signal.type);
    tree.PutValue(wire::kSignalProfile, signal.profile);
    tree.PutValue(wire::kSignalScreen, signal.screen);
    tree.PutValue(wire::kSignalData, signal.data);
    tree.PutValue(wire::kSignalNumber, number);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Signal;
    header.session = session;
    connection->Send(header, m_tree);
    return true;
}

} // namespace sim
