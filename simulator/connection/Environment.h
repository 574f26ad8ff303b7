#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include <wire/Message.h>

// A client's environment variables, and its token.

// Where the daemon listens: NORVEX_SOCKET, or norvex.sock in the user's run-time directory.
std::string FindSocketPath();

// Longest wait for a connection with its welcome (NORVEX_CONNECT_LIMIT_MS, 1000), and for the reply
// to a call (NORVEX_CALL_LIMIT_MS, 5000). A variable that is not a number from 1 to 3600000 is
// ignored.
struct Limits {
    std::chrono::milliseconds connect;
    std::chrono::milliseconds call;

    static Limits Find();
};

// The client's identity: random bytes, the same on all connections of the process.
struct ClientToken {
    unsigned char bytes[wire::kTokenSize];

    static const ClientToken& Get();
    // In a child of fork, which is a client of its own.
    static void Renew();
};
