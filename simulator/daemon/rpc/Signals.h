#pragma once

#include <cstdint>

#include "Connection.h"
#include "Sessions.h"

namespace sim {

// Sends signals on the connections that clients have opened for them. The components decide who
// gets which signal.
class Signals {
public:
    struct Signal {
        std::int32_t type;
        std::int32_t profile;
        std::uint16_t screen;
        std::uint64_t data;
    };

    // A connection ends with its session.
    explicit Signals(Sessions& sessions);

    // Uses the connection for the signal subscriber with this session; an earlier one is ended.
    // False: its client has no such session.
    bool Attach(std::uint32_t session, Connection& connection);
    void Detach(const Connection& connection);
    bool IsAttached(std::uint32_t session) const { return FindConnection(session) != nullptr; }

    // The number of the next signal, from 1; the same for all its receivers.
    std::uint64_t TakeNumber() { return ++m_lastNumber; }
    std::uint64_t GetLastNumber() const { return m_lastNumber; }
    // False if the session currently has no connection; the signal is then lost.
    bool Send(std::uint32_t session, const Signal& signal, std::uint64_t number);

private:
    Connection* FindConnection(std::uint32_t session) const;

    Sessions& m_sessions;
    std::uint64_t m_lastNumber = 0;
    wire::Buffer m_tree;
};

} // namespace sim
