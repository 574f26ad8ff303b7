#pragma once

#include <vector>

namespace bench {

// Clients of the TV that NORVEX_SOCKET names: each has connected and been welcomed, and makes no
// calls.
class IdleClients {
public:
    // Ends the program when the TV does not accept all of them.
    explicit IdleClients(int count);
    ~IdleClients();
    IdleClients(const IdleClients&) = delete;
    IdleClients& operator=(const IdleClients&) = delete;

private:
    std::vector<int> m_sockets;
};

// norvex-simctl waiting, many times, for values of the TV that NORVEX_SOCKET names: for the service of
// the main pipeline, the items of the debug menu, the QoS switch and the scan, none of which comes.
class Waiters {
public:
    // Ends the program when the TV does not accept all of them.
    explicit Waiters(int count);
    ~Waiters();
    Waiters(const Waiters&) = delete;
    Waiters& operator=(const Waiters&) = delete;

private:
    std::vector<int> m_sockets;
};

} // namespace bench
