#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <base/Log.h>

#include "Changes.h"
#include "Clients.h"
#include "Connection.h"
#include "Dispatcher.h"
#include "Listener.h"
#include "Signals.h"

namespace sim {

// The product's socket: accepts clients, handles their hello, and passes calls to the dispatcher.
// Copes with clients that are silent, send malformed data or never read.
class Server : private Connection::Owner {
public:
    // Maximum number of connections, and of those of one client.
    static constexpr std::size_t kMaxConnections = 512;
    static constexpr unsigned kMaxOfOneClient = 64;
    // Of those without a hello, the oldest is evicted.
    static constexpr std::size_t kMaxWithoutHello = 64;
    static constexpr unsigned kHelloMilliseconds = 2000;
    // Maximum bytes of messages in transit on all connections. When more are needed, the client that
    // has most of them loses a connection.
    static constexpr std::size_t kMaxHeld = 128u << 20;

    Server(Clients& clients, Dispatcher& dispatcher, Signals& signals, Changes& changes, Log& log);
    ~Server() override;

    // False: `error` is a line. The path must have been claimed.
    bool Open(const std::string& path, std::string& error);

    // Sends a log line to the tag's followers.
    void PushLine(std::string_view tag, std::string_view line);

    // Differs for each start of the daemon.
    std::uint64_t GetEpoch() const { return m_epoch; }

private:
    void Accept(int fd);
    void MessageArrived(Connection& connection, const wire::Message& message) override;
    void ConnectionEnded(Connection& connection, const std::string& why) override;
    bool HasRoomFor(Connection& connection, std::size_t size) override;
    void ClientsChanged();
    void FollowersChanged();
    void Hello(Connection& connection, const wire::Message& message);

    Clients& m_clients;
    Dispatcher& m_dispatcher;
    Signals& m_signals;
    Changes& m_changes;
    Log& m_log;
    std::uint64_t m_epoch;
    std::uint32_t m_lastNumber = 0;
    // Oldest first.
    std::list<std::unique_ptr<Connection>> m_connections;
    std::list<Connection*> m_withoutHello;
    std::list<Connection*> m_followers;
    // Ended, but possibly in use further up the stack.
    std::vector<std::unique_ptr<Connection>> m_ended;
    Timer m_cleanUp;
    Listener m_listener;
};

} // namespace sim
