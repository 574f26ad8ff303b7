#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <wire/Buffer.h>
#include <wire/Message.h>
#include <wire/Packet.h>
#include <wire/Tree.h>

// The peer of a client's connections, for tests: a socket in a directory of its own that
// NORVEX_SOCKET names, and as much of a daemon's behaviour as a test wants. Its operations
// block, so a test runs them on a thread of their own or before the client asks.
class FakeService {
public:
    // One connection as the service sees it.
    class Connection {
    public:
        explicit Connection(int socket) : m_socket(socket) {}
        ~Connection();
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        // The next message; false at the end of the connection. Its views hold until the next one.
        bool Receive(wire::Message& message);
        // The next packet as it came; empty at the end.
        std::vector<unsigned char> ReceivePacket();
        // Waits for the hello and answers it. The hello's role.
        wire::Role Welcome(std::uint64_t epoch = 1, std::uint32_t client = 1);
        void SendWelcome(std::uint64_t epoch = 1, std::uint32_t client = 1);
        void Send(wire::MessageKind kind, std::uint32_t serial, const void* tree, std::size_t treeSize);
        // A reply whose argument 0 is the status, with more arguments by `tree`.
        void Reply(const wire::Message& call, std::int32_t status);
        void Reply(const wire::Message& call, const wire::Buffer& tree);
        void SendSignal(std::int32_t type, std::int32_t profile, std::uint16_t screen, std::uint64_t data);
        void SendRaw(const void* packet, std::size_t size);
        void Close();
        // Until the client has closed its end.
        void AwaitEnd();

        // Of the hello that Welcome took.
        std::uint32_t helloSession = 0;
        std::string helloToken;

    private:
        int m_socket;
        wire::PacketAssembler m_assembler;
        std::vector<unsigned char> m_packet;
    };

    // Sets NORVEX_SOCKET; listens.
    FakeService();
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // The next connection.
    std::unique_ptr<Connection> Accept();
    // Like a daemon that has died (the path stays) and one that starts again.
    void StopListening();
    void Listen();
    const std::string& GetPath() const { return m_path; }

    // Answers calls on the connection until its end, with a status of 1; sessions are numbered from
    // `firstSession`. What was called, as "METHOD SESSION".
    static std::vector<std::string> Serve(Connection& connection, std::uint32_t firstSession = 1);

private:
    std::string m_directory;
    std::string m_path;
    int m_listener = -1;
};

// Sets an environment variable for a scope.
class Variable {
public:
    Variable(const char* name, const std::string& value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* m_name;
};
