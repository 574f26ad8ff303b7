#pragma once

#include <array>
#include <cstdint>
#include <list>

#include <wire/Message.h>

#include "EventSources.h"

namespace sim {

struct Session;

using Token = std::array<unsigned char, wire::kTokenSize>;

// A client process, identified by its token on all its connections. What it owns (sessions,
// windows, subscriptions, dialogues) outlives its connections by a grace period, so that a client
// that reconnects keeps it.
class Client {
public:
    Client(std::uint32_t number, const Token& token) : m_number(number), m_token(token) {}

    // Number of the client since the daemon's start, from 1; components key their data by it.
    std::uint32_t GetNumber() const { return m_number; }
    const Token& GetToken() const { return m_token; }
    unsigned GetConnectionCount() const { return m_connections; }
    std::size_t GetSessionCount() const { return m_sessions.size(); }

private:
    friend class Clients;
    friend class Sessions;

    std::uint32_t m_number;
    Token m_token;
    unsigned m_connections = 0;
    // In the order of their last use, the longest unused first.
    std::list<Session*> m_sessions;
    Timer m_grace;
};

} // namespace sim
