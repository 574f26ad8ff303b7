#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>

#include <wire/Message.h>
#include <wire/Packet.h>

// The TV as the client library meets it, without a second process or thread: a program with a far
// side in it has a `connect` of its own that ends here, and a `sendmsg` after which the far side
// answers before it returns. Between the two is a real pair of sockets, so that the client library
// is the one that ships.
//
// One thread.
class FarSide {
public:
    // One connection of the client, at its far end.
    class Line {
    public:
        explicit Line(int socket) : m_socket(socket) {}
        ~Line();
        Line(const Line&) = delete;
        Line& operator=(const Line&) = delete;

        void Send(const wire::MessageHeader& header, const void* tree, std::size_t treeSize);
        // Bytes as they stand; an empty packet, which would be the end, is left out. False when the
        // socket does not take it, or the line has ended.
        bool SendPacket(std::span<const unsigned char> packet);
        void Close();
        // What the hello said.
        wire::Role role = wire::Role::Calls;

    private:
        friend class FarSide;
        int m_socket;
        wire::PacketAssembler m_assembler;
    };
    using Answer = std::function<void(Line& line, const wire::Message& message)>;

    static FarSide& Get();

    // What answers each message of the client from now on.
    void SetAnswer(Answer answer) { m_answer = std::move(answer); }
    // Answers a hello as a TV does; false for any other message.
    static bool Welcome(Line& line, const wire::Message& message);
    // Ends every connection.
    void Hang();

    // For `connect` and `sendmsg`. False when the descriptor is none of the far side's.
    bool Connect(int socket);
    bool Serve(int socket);

private:
    Answer m_answer;
    std::map<int, std::unique_ptr<Line>> m_lines; // by the client's descriptor
};
