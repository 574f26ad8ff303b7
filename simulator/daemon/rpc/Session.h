#pragma once

#include <cstdint>
#include <memory>

namespace sim {

class Client;
class Interface;

// What an interface keeps for each of its sessions; derive from it.
struct SessionData {
    virtual ~SessionData() = default;
};

// One object that a client made by a factory.
struct Session {
    std::uint32_t id;
    Interface* interface;
    std::int32_t profile;
    std::uint16_t screen;
    Client* client; // outlives its sessions
    std::unique_ptr<SessionData> data;
};

} // namespace sim
