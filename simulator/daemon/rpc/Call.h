#pragma once

#include <cstdint>

namespace sim {

class Client;
struct Session;

// The context of a call, in addition to its arguments.
struct Call {
    Client& client;
    // The session of the call; it belongs to this client and to the called interface. Null for
    // interfaces without sessions.
    Session* session;
    // Number of the call in the journal and in log lines.
    std::uint64_t sequence;
};

} // namespace sim
