#pragma once

#include <cstdint>
#include <list>
#include <memory>

namespace sim {

class Client;
class Connection;
class Interface;

// Data that an interface keeps per session; derive from it.
struct SessionData {
    virtual ~SessionData() = default;
};

// One object that a client created with a factory.
struct Session {
    std::uint32_t id;
    Interface* interface;
    std::int32_t profile;
    std::uint16_t screen;
    Client* client; // outlives its sessions
    std::unique_ptr<SessionData> data = nullptr;
    Connection* signals = nullptr;               // of a signal subscriber; null: not connected
    std::list<Session*>::iterator inClient = {}; // its place in the client's list
};

} // namespace sim
