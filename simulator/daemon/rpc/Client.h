#pragma once

#include <array>
#include <cstdint>

#include <wire/Message.h>

#include "EventSources.h"

namespace sim {

using Token = std::array<unsigned char, wire::kTokenSize>;

// A client process, known by its token on all of its connections. What it owns (sessions, windows,
// subscriptions, dialogues) outlives its connections by a grace period, so that a client that
// connects again keeps it.
class Client {
public:
    Client(std::uint32_t number, const Token& token) : m_number(number), m_token(token) {}

    // Counts the clients of the daemon's run from 1; what parts key their data by.
    std::uint32_t GetNumber() const { return m_number; }
    const Token& GetToken() const { return m_token; }
    unsigned GetConnectionCount() const { return m_connections; }
    std::size_t GetSessionCount() const { return m_sessions; }

private:
    friend class Clients;
    friend class Sessions;

    std::uint32_t m_number;
    Token m_token;
    unsigned m_connections = 0;
    std::size_t m_sessions = 0;
    Timer m_grace;
};

} // namespace sim
