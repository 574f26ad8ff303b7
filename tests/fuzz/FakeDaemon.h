#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>

#include <wire/Message.h>
#include <wire/Packet.h>

// The TV as the client library meets it, without a second process or thread: a program with it has
// a `connect` of its own that ends here, and a `sendmsg` that returns when the fake daemon has
// answered. In between is a real pair of sockets, so that the client library is the one that ships.
//
// One thread.
class FakeDaemon {
public:
    // One connection of the client, at the daemon's end.
    class Connection {
    public:
        explicit Connection(int socket) : m_socket(socket) {}
        ~Connection();
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        void Send(const wire::MessageHeader& header, const void* tree, std::size_t treeSize);
        // Bytes as they stand; an empty packet, which would be the end, is left out. False when the
        // socket does not take it, or the connection has ended.
        bool SendPacket(std::span<const unsigned char> packet);
        void Close();
        // What the hello said.
        wire::Role role = wire::Role::Calls;

    private:
        friend class FakeDaemon;
        int m_socket;
        wire::PacketAssembler m_assembler;
    };
    using Answer = std::function<void(Connection& connection, const wire::Message& message)>;

    static FakeDaemon& Get();

    // What answers each message of the client from now on.
    void SetAnswer(Answer answer) { m_answer = std::move(answer); }
    // Answers a hello as a TV does; false for any other message.
    static bool Welcome(Connection& connection, const wire::Message& message);
    // Ends every connection.
    void CloseAll();

    // For `connect` and `sendmsg`. False unless the descriptor is one of its connections'.
    bool Connect(int socket);
    bool Serve(int socket);

private:
    Answer m_answer;
    std::map<int, std::unique_ptr<Connection>> m_connections; // by the client's descriptor
};
