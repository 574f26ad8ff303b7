#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <string>

#include <wire/Message.h>
#include <wire/Packet.h>

#include "EventSources.h"

namespace sim {

class Client;

// One connection of a client: receives packets, assembles messages, sends messages without
// blocking. What cannot be sent at once is queued up to a limit.
class Connection {
public:
    class Owner {
    public:
        virtual ~Owner() = default;
        // A complete message; it points into the connection and is valid until the next one.
        virtual void MessageArrived(Connection& connection, const wire::Message& message) = 0;
        // The connection has ended or sent something malformed; called once. `why` is a line, empty
        // at a normal end. The object must live until the loop's next round.
        virtual void ConnectionEnded(Connection& connection, const std::string& why) = 0;
        // Whether the connection may hold this many more bytes of messages received or not sent yet.
        // May end others.
        virtual bool HasRoomFor(Connection&, std::size_t) { return true; }
        // Memory held by all connections; counted by them.
        std::size_t held = 0;
    };

    // Takes ownership of the descriptor, which is non-blocking.
    Connection(int fd, std::uint32_t number, Owner& owner);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Number of the connection, from 1, for log lines.
    std::uint32_t GetNumber() const { return m_number; }

    // Reads what has arrived, as if called by the loop.
    void Read();
    // Sends a message without names. The tree's content is moved if it has to be queued; in any
    // case the buffer is unspecified afterwards and can be reused.
    void Send(const wire::MessageHeader& header, wire::Buffer& tree);
    // The same after a delay, unless the connection has ended by then.
    void SendLate(unsigned milliseconds, const wire::MessageHeader& header, wire::Buffer& tree);
    // Ends the connection; the owner is notified with `why`.
    void End(const std::string& why);
    bool IsOpen() const { return m_fd >= 0; }
    // Bytes of messages that are incomplete or not sent yet.
    std::size_t GetHeld() const { return m_held; }
    // Set by the hello.
    Client* client = nullptr;
    wire::Role role = wire::Role::Calls;
    std::uint32_t session = 0; // of a signal connection; set by Signals
    std::string tag;           // of a log connection
    Timer helloDeadline;

    // Maximum of unsent bytes on a signal or log connection.
    static constexpr std::size_t kMaxQueued = 4u << 20;
    // A client that reads none of the queued output for this long is dropped.
    static constexpr unsigned kStuckMilliseconds = 30000;
    // The same for a client that sends no more of a message that it has begun.
    static constexpr unsigned kRestMilliseconds = 5000;
    // Why a connection is dropped when there is no room for its messages.
    static constexpr const char* kTooMuch = "messages of all connections take too much memory";

private:
    struct Outgoing;
    struct Late;

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
    std::list<Late> m_late;
    std::size_t m_lateBytes = 0;
    // This connection's share of the owner's count.
    std::size_t m_held = 0;
    Timer m_stuck;
    Timer m_rest;
};

} // namespace sim
