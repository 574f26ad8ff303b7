#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <base/Log.h>

#include "ControlCommands.h"
#include "ControlConnection.h"
#include "Listener.h"

namespace sim {

// The control socket, next to the product's: for tests and people to inspect the TV and change its
// environment.
class ControlServer {
public:
    // With those that wait for a condition.
    static constexpr std::size_t kMaxConnections = 1280;
    static constexpr std::size_t kMaxWithoutRequest = 128;

    ControlServer(const ControlCommands& commands, Log& log);

    // False: `error` is a line. The path must have been claimed.
    bool Open(const std::string& path, std::string& error);

private:
    void Accept(int fd);
    void Ended(ControlConnection& connection);

    const ControlCommands& m_commands;
    Log& m_log;
    std::list<std::unique_ptr<ControlConnection>> m_connections;
    // Ended, but possibly in use further up the stack.
    std::vector<std::unique_ptr<ControlConnection>> m_ended;
    Timer m_cleanUp;
    Listener m_listener;
};

} // namespace sim
