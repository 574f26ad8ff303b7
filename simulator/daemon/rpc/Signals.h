#pragma once

#include <cstdint>
#include <map>

#include "Connection.h"
#include "Sessions.h"

namespace sim {

// Carries signals to the connections that clients have opened for them. Who gets which signal is
// decided by the parts.
class Signals {
public:
    struct Signal {
        std::int32_t type;
        std::int32_t profile;
        std::uint16_t screen;
        std::uint64_t data;
    };

    explicit Signals(Sessions& sessions) : m_sessions(sessions) {}

    // A connection serves the signal subscriber that is this session; a later one takes its place.
    // False: its client has no such session.
    bool Attach(std::uint32_t session, Connection& connection);
    void Detach(const Connection& connection);
    bool IsAttached(std::uint32_t session) const { return m_connections.contains(session); }

    // A number for the next signal of the daemon's run, from 1; the same for everyone who gets it.
    std::uint64_t TakeNumber() { return ++m_lastNumber; }
    std::uint64_t GetLastNumber() const { return m_lastNumber; }
    // False when the session has no connection at the moment; the signal is lost then.
    bool Send(std::uint32_t session, const Signal& signal, std::uint64_t number);

private:
    Sessions& m_sessions;
    std::map<std::uint32_t, Connection*> m_connections;
    std::uint64_t m_lastNumber = 0;
    wire::Buffer m_tree;
};

} // namespace sim
