#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "Client.h"

namespace sim {

// All clients that are connected, or were within the grace period.
class Clients {
public:
    using ReleaseHook = std::function<void(Client&)>;

    static constexpr unsigned kGraceMilliseconds = 2000;

    explicit Clients(unsigned graceMilliseconds = kGraceMilliseconds) : m_graceMilliseconds(graceMilliseconds) {}

    // A connection of the client with this token has sent its hello. The reference stays valid
    // until the client's release, so at least while it has a connection.
    Client& Connected(const Token& token);
    // A connection of the client has ended.
    void Disconnected(Client& client);

    // Called when a client sends its first hello.
    void SetBeginHook(std::function<void()> hook) { m_begins = std::move(hook); }
    // Called in the order of adding when a client is released.
    void AddReleaseHook(ReleaseHook hook) { m_hooks.push_back(std::move(hook)); }

    std::size_t GetCount() const { return m_clients.size(); }
    template <class F> void ForEach(F&& visit) const {
        for (const auto& [token, client] : m_clients)
            visit(*client);
    }

private:
    void Release(const Token& token);

    unsigned m_graceMilliseconds;
    std::uint32_t m_lastNumber = 0;
    std::map<Token, std::unique_ptr<Client>> m_clients;
    std::function<void()> m_begins;
    std::vector<ReleaseHook> m_hooks;
};

} // namespace sim
