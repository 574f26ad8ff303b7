#include "Clients.h"

namespace sim {

Client& Clients::Connected(const Token& token) {
    auto& client = m_clients[token];
    if (client == nullptr) {
        client = std::make_unique<Client>(++m_lastNumber, token);
        if (m_begins)
            m_begins();
    }
    ++client->m_connections;
    client->m_grace.Stop();
    return *client;
}

void Clients::Disconnected(Client& client) {
    if (--client.m_connections == 0)
        client.m_grace.Start(m_graceMilliseconds, [this, token = client.m_token] { Release(token); });
}

void Clients::Release(const Token& token) {
    // Removed first: hooks that look at all clients see the remaining ones.
    auto node = m_clients.extract(token);
    if (node.empty())
        return;
    for (const ReleaseHook& hook : m_hooks)
        hook(*node.mapped());
}

} // namespace sim
