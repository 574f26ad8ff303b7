#pragma once

#include <cstdint>

namespace sim {

class Client;
struct Session;

// Who calls, beside the arguments.
struct Call {
    Client& client;
    // The session that the call goes to; of this client and of the interface called. Null for
    // interfaces that are called without one.
    Session* session;
    // Number of the call in the journal and in log lines.
    std::uint64_t sequence;
};

} // namespace sim
