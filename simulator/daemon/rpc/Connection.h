#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include <wire/Message.h>
#include <wire/Packet.h>

#include "EventSources.h"

namespace sim {

class Client;

// One connection of a client: takes packets in, puts messages together, sends messages out without
// ever waiting. What cannot be sent at once is queued within a bound.
class Connection {
public:
    class Owner {
    public:
        virtual ~Owner() = default;
        // A whole message; it points into the connection until the next one.
        virtual void MessageArrived(Connection& connection, const wire::Message& message) = 0;
        // It has ended, or what came is malformed; called once. `why` is a line, empty at an ordinary end.
        // The object must live until the loop's next round.
        virtual void ConnectionEnded(Connection& connection, const std::string& why) = 0;
        // Whether so many bytes more may be held, for a message on its way in or out.
        virtual bool HasRoomFor(std::size_t) { return true; }
        // Memory that all its connections hold; counted by them.
        std::size_t held = 0;
    };

    // Owns the descriptor, which is non-blocking.
    Connection(int fd, std::uint32_t number, Owner& owner);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Counts connections from 1, for log lines.
    std::uint32_t GetNumber() const { return m_number; }

    // Reads what has come, as if told by the loop.
    void Read();
    // Sends a message without names. The tree's content is taken over when it has to wait; the
    // buffer is the caller's again either way, its content gone.
    void Send(const wire::MessageHeader& header, wire::Buffer& tree);
    // Ends the connection; the owner is told with `why`.
    void End(const std::string& why);
    bool IsOpen() const { return m_fd >= 0; }
    // Who it serves: set by the hello.
    Client* client = nullptr;
    wire::Role role = wire::Role::Calls;
    std::uint32_t session = 0; // of a signal connection
    std::string tag;           // of a log connection
    Timer helloDeadline;

    // Bytes that may wait on a connection that is pushed to.
    static constexpr std::size_t kMaxQueued = 4u << 20;
    // A client that takes nothing of what waits for this long is dropped.
    static constexpr unsigned kStuckMilliseconds = 30000;

private:
    struct Outgoing;

    void Ready(std::uint32_t events);
    bool ReadPacket();
    static ssize_t SendPieces(int fd, iovec* pieces, int count);
    void Flush();
    void CountHeld();

    int m_fd;
    std::uint32_t m_number;
    Owner& m_owner;
    FdWatch m_watch;
    wire::PacketAssembler m_assembler;
    std::deque<std::unique_ptr<Outgoing>> m_queue;
    std::size_t m_queued = 0;
    // What the owner has counted of this connection.
    std::size_t m_held = 0;
    Timer m_stuck;
};

} // namespace sim
