#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "Changes.h"
#include "Clients.h"
#include "Connection.h"
#include "Dispatcher.h"
#include "Listener.h"
#include "Signals.h"
#include <base/Log.h>

namespace sim {

// The product's socket: lets clients in, hears who they are, and brings calls to the dispatcher.
// Holds its own against peers that say nothing, nonsense, or never listen.
class Server : private Connection::Owner {
public:
    // At most so many connections; of those that have not said hello, the oldest make way.
    static constexpr std::size_t kMaxConnections = 512;
    static constexpr std::size_t kMaxWithoutHello = 64;
    static constexpr unsigned kHelloMilliseconds = 2000;
    // Bytes of messages that all connections together have on their way in and out: whose is the
    // next one is dropped.
    static constexpr std::size_t kMaxHeld = 128u << 20;

    Server(Clients& clients, Dispatcher& dispatcher, Signals& signals, Changes& changes, Log& log);
    ~Server() override;

    // False: `error` is a line. The path must have been claimed.
    bool Open(const std::string& path, std::string& error);

    // Pushes a log line to who follows the tag.
    void PushLine(std::string_view tag, std::string_view line);

    // Differs from one run to the next.
    std::uint64_t GetEpoch() const { return m_epoch; }

private:
    void Accept(int fd);
    void MessageArrived(Connection& connection, const wire::Message& message) override;
    void ConnectionEnded(Connection& connection, const std::string& why) override;
    bool HasRoomFor(std::size_t size) override;
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
    // Ended, but perhaps still in use further up the stack.
    std::vector<std::unique_ptr<Connection>> m_ended;
    Timer m_cleanUp;
    Listener m_listener;
};

} // namespace sim
