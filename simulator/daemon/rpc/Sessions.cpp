#include "Sessions.h"

#include <algorithm>

#include "Client.h"
#include "Interface.h"

namespace sim {

Session* Sessions::Open(Interface& interface, std::int32_t profile, std::uint16_t screen, Client& client,
                        std::int32_t& status) {
    auto session = std::make_unique<Session>(Session{m_lastId + 1, &interface, profile, screen, &client});
    status = interface.OpenSession(*session);
    if (status != 0)
        return nullptr;
    ++m_lastId;
    Session* opened = session.get();
    m_sessions.emplace(opened->id, std::move(session));
    opened->inClient = client.m_sessions.insert(client.m_sessions.end(), opened);
    for (const Hook& hook : m_hooks)
        hook(*opened, true);
    return opened;
}

bool Sessions::Close(std::uint32_t id, const Client& client) {
    Session* session = Find(id);
    if (session == nullptr || session->client != &client)
        return false;
    Close(*session);
    return true;
}

void Sessions::CloseAll(const Client& client) {
    std::vector<std::uint32_t> ids;
    for (const Session* session : client.m_sessions)
        ids.push_back(session->id);
    std::sort(ids.begin(), ids.end());
    for (auto id = ids.rbegin(); id != ids.rend(); ++id)
        Close(*id, client);
}

Session* Sessions::Find(std::uint32_t id) {
    const auto found = m_sessions.find(id);
    return found == m_sessions.end() ? nullptr : found->second.get();
}

void Sessions::Use(Session& session) {
    std::list<Session*>& sessions = session.client->m_sessions;
    sessions.splice(sessions.end(), sessions, session.inClient);
}

Session* Sessions::FindLongestUnused(const Client& client) {
    const auto found = std::find_if(client.m_sessions.begin(), client.m_sessions.end(),
                                    [](const Session* session) { return session->signals == nullptr; });
    return found == client.m_sessions.end() ? nullptr : *found;
}

void Sessions::Close(Session& session) {
    for (const Hook& hook : m_hooks)
        hook(session, false);
    session.interface->CloseSession(session);
    session.client->m_sessions.erase(session.inClient);
    m_sessions.erase(session.id);
}

} // namespace sim
