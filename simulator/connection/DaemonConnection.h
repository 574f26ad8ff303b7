#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <wire/Message.h>
#include <wire/Packet.h>

#include "Deadline.h"

class TCMessageBuffer;

// Why a call failed.
enum class Failure {
    None,
    Absent,       // it is not running
    Foreign,      // a process of another user listens
    Unresponsive, // no answer within the limit
    Stalled,      // as before, and known from a call before this one
    Gone,         // it ended, or closed the connection
    Malformed,    // its answer violates the protocol
    NotSent,      // the connection had ended before anything was sent on it
    Refused,      // it runs, and refused
};

// One connection to the daemon: a socket on which a hello has been sent. It is discarded after its
// first failure, so that a late reply is never taken for another call's. In a child of fork it has
// ended: the child is a client of its own, as after a restart of the daemon.
//
// One thread at a time.
class DaemonConnection {
public:
    // What a connection is for.
    struct Purpose {
        wire::Role role = wire::Role::Calls;
        std::uint32_t session = 0;    // signals: for this subscriber's session
        std::string_view logTag = {}; // log: lines with this tag
    };

    // Connects and sends the hello, without waiting for the answer. A limit of zero never blocks.
    // Null on failure.
    static std::unique_ptr<DaemonConnection> Open(const std::string& path, const Purpose& purpose,
                                                  std::chrono::milliseconds limit, Failure& failure);
    ~DaemonConnection();
    DaemonConnection(const DaemonConnection&) = delete;
    DaemonConnection& operator=(const DaemonConnection&) = delete;

    // Waits for the answer to the hello; a limit of zero does not wait, and Unresponsive means that
    // it has not arrived yet.
    Failure AwaitWelcome(std::chrono::milliseconds limit);
    // From the welcome: the daemon's run, and this process's client number.
    std::uint64_t GetEpoch() const { return m_epoch; }
    std::uint32_t GetClient() const { return m_client; }

    struct CallHeader {
        std::string_view interfaceName;
        std::string_view method;
        std::int16_t methodId = 0;
        std::uint32_t serial = 0;
        std::uint32_t session = 0;
    };
    // Sends a call, waits for its reply and copies its tree to `reply`. Blocks for at most `limit`.
    // After any failure the connection must not be used again.
    Failure Call(const CallHeader& header, const void* tree, std::size_t treeSize, std::chrono::milliseconds limit,
                 TCMessageBuffer& reply);

    // Takes the next message of a signal or log connection, without waiting. None: `message` is a
    // view, valid until the next call; Unresponsive: there is none yet.
    Failure TakePushed(wire::Message& message);

    int GetDescriptor() const { return m_socket; }

    // Increases each time the daemon has released this client; see DaemonClient.
    std::uint64_t generation = 0;

private:
    explicit DaemonConnection(int socket);

    Failure SayHello(const Purpose& purpose);
    Failure Send(wire::PacketSender& sender, const Deadline& deadline);
    Failure Receive(const Deadline& deadline, std::size_t& size);
    Failure ReceiveReply(std::uint32_t serial, const Deadline& deadline, TCMessageBuffer& reply);
    Failure ReceiveRest(const Deadline& deadline, std::size_t size, TCMessageBuffer& reply);
    Failure ReadWelcome(const wire::Message& message);
    // The socket's own limits, which are cheaper than polling first.
    void ArmReceive(std::chrono::milliseconds limit);
    void ArmSend(std::chrono::milliseconds limit);

    int m_socket;
    std::chrono::milliseconds m_receiveLimit{0}; // 0: not set
    std::chrono::milliseconds m_sendLimit{0};
    std::uint64_t m_epoch = 0;
    std::uint32_t m_client = 0;
    std::unique_ptr<unsigned char[]> m_packet;
    wire::PacketAssembler m_assembler;
};
