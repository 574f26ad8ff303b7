#include "Signals.h"

#include <wire/Tree.h>

#include "Session.h"

namespace sim {

bool Signals::Attach(std::uint32_t session, Connection& connection) {
    const Session* served = m_sessions.Find(session);
    if (served == nullptr || served->client != connection.client)
        return false;
    m_connections[session] = &connection;
    return true;
}

void Signals::Detach(const Connection& connection) {
    std::erase_if(m_connections, [&](const auto& entry) { return entry.second == &connection; });
}

bool Signals::Send(std::uint32_t session, const Signal& signal, std::uint64_t number) {
    const auto found = m_connections.find(session);
    if (found == m_connections.end())
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
    found->second->Send(header, m_tree);
    return true;
}

} // namespace sim
