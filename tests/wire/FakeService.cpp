#include "FakeService.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <interfaces/Interfaces.h>

#include "MessagePackets.h"

namespace {

constexpr std::size_t kRoom = 256u << 10;

[[noreturn]] void Fail(const char* what) {
    throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

} // namespace

FakeService::Connection::~Connection() {
    Close();
}

void FakeService::Connection::Close() {
    if (m_socket >= 0)
        close(m_socket);
    m_socket = -1;
}

std::vector<unsigned char> FakeService::Connection::ReceivePacket() {
    std::vector<unsigned char> packet(kRoom);
    ssize_t size = 0;
    do
        size = recv(m_socket, packet.data(), packet.size(), 0);
    while (size < 0 && errno == EINTR);
    packet.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return packet;
}

bool FakeService::Connection::Receive(wire::Message& message) {
    while (true) {
        m_packet = ReceivePacket();
        if (m_packet.empty())
            return false;
        switch (m_assembler.Feed(m_packet.data(), m_packet.size())) {
        case wire::PacketAssembler::Result::NeedMore:
            break;
        case wire::PacketAssembler::Result::Malformed:
            throw std::runtime_error("a malformed packet");
        case wire::PacketAssembler::Result::Complete:
            const wire::Buffer& bytes = m_assembler.GetMessage();
            if (!wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message))
                throw std::runtime_error("a malformed message");
            return true;
        }
    }
}

void FakeService::Connection::Send(wire::MessageKind kind, std::uint32_t serial, const void* tree,
                                   std::size_t treeSize) {
    wire::MessageHeader header;
    header.kind = kind;
    header.serial = serial;
    for (const Packet& packet : ToPackets(header, {}, {}, tree, treeSize)) {
        // The test itself has closed the client.
        if (send(m_socket, packet.data(), packet.size(), MSG_NOSIGNAL) < 0 && errno != EPIPE && errno != ECONNRESET)
            Fail("send");
    }
}

void FakeService::Connection::SendRaw(const void* packet, std::size_t size) {
    if (send(m_socket, packet, size, MSG_NOSIGNAL) < 0)
        Fail("send");
}

void FakeService::Connection::SendWelcome(std::uint64_t epoch, std::uint32_t client) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kWelcomeVersion, wire::kProtocolVersion);
    writer.PutValue(wire::kWelcomeEpoch, epoch);
    writer.PutValue(wire::kWelcomeClient, client);
    Send(wire::MessageKind::Welcome, 0, tree.GetData(), tree.GetSize());
}

wire::Role FakeService::Connection::Welcome(std::uint64_t epoch, std::uint32_t client) {
    wire::Message message;
    if (!Receive(message) || message.header.kind != wire::MessageKind::Hello)
        throw std::runtime_error("no hello");
    wire::Role role{};
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node))
        if (node.tag == wire::kHelloRole)
            node.Get(role);
        else if (node.tag == wire::kHelloSession)
            node.Get(helloSession);
        else if (node.tag == wire::kHelloToken)
            helloToken = node.GetBytes();
    SendWelcome(epoch, client);
    return role;
}

void FakeService::Connection::Reply(const wire::Message& call, const wire::Buffer& tree) {
    Send(wire::MessageKind::Reply, call.header.serial, tree.GetData(), tree.GetSize());
}

void FakeService::Connection::Reply(const wire::Message& call, std::int32_t status) {
    wire::Buffer tree;
    wire::TreeWriter(tree).PutValue(0, status);
    Reply(call, tree);
}

void FakeService::Connection::SendSignal(std::int32_t type, std::int32_t profile, std::uint16_t screen,
                                         std::uint64_t data) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kSignalType, type);
    writer.PutValue(wire::kSignalProfile, profile);
    writer.PutValue(wire::kSignalScreen, screen);
    writer.PutValue(wire::kSignalData, data);
    Send(wire::MessageKind::Signal, 0, tree.GetData(), tree.GetSize());
}

void FakeService::Connection::AwaitEnd() {
    while (!ReceivePacket().empty()) {
    }
}

FakeService::FakeService() {
    char pattern[] = "/tmp/norvex-test-XXXXXX";
    if (mkdtemp(pattern) == nullptr)
        Fail("mkdtemp");
    m_directory = pattern;
    m_path = m_directory + "/norvex.sock";
    setenv("NORVEX_SOCKET", m_path.c_str(), 1);
    Listen();
}

FakeService::~FakeService() {
    StopListening();
    unlink(m_path.c_str());
    rmdir(m_directory.c_str());
}

void FakeService::StopListening() {
    if (m_listener >= 0)
        close(m_listener);
    m_listener = -1;
}

void FakeService::Listen() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, m_path.data(), m_path.size());
    unlink(m_path.c_str());
    m_listener = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (m_listener < 0 || bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0 ||
        listen(m_listener, 16) < 0)
        Fail("listen");
}

std::unique_ptr<FakeService::Connection> FakeService::Accept() {
    const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0)
        Fail("accept");
    return std::make_unique<Connection>(socket);
}

std::vector<std::string> FakeService::Serve(Connection& connection, std::uint32_t firstSession) {
    std::vector<std::string> calls;
    wire::Message message;
    while (connection.Receive(message)) {
        calls.push_back(std::string(message.method) + " " + std::to_string(message.header.session));
        if (message.method == GetMethodName(interfaces::NorvexSessionMethod::Open)) {
            wire::Buffer tree;
            wire::TreeWriter writer(tree);
            writer.PutValue(0, std::int32_t{0});
            writer.PutValue(1, firstSession++);
            connection.Reply(message, tree);
        } else {
            connection.Reply(message, 1);
        }
    }
    return calls;
}

Variable::Variable(const char* name, const std::string& value) : m_name(name) {
    setenv(name, value.c_str(), 1);
}

Variable::~Variable() {
    unsetenv(m_name);
}
