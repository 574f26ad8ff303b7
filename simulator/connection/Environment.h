#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include <wire/Message.h>

// What a client learns from its environment, and who it is.

// Where the TV service listens: NORVEX_SOCKET, or norvex.sock in the user's run-time directory.
std::string FindSocketPath();

// Longest wait for a connection with its welcome (NORVEX_CONNECT_LIMIT_MS, 1000), and for the reply
// to a call (NORVEX_CALL_LIMIT_MS, 5000). A variable that holds no number from 1 to 3600000 counts
// as not there.
struct Limits {
    std::chrono::milliseconds connect;
    std::chrono::milliseconds call;

    static Limits Find();
};

// The client as the TV service knows it: random bytes, the same on all connections of the process.
struct ClientToken {
    unsigned char bytes[wire::kTokenSize];

    static const ClientToken& Get();
};
