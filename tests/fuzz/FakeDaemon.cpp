#include "FakeDaemon.h"

#include <cerrno>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <wire/Tree.h>

#include "MessagePackets.h"
#include "Require.h"

namespace {

constexpr std::size_t kMaxPacket = wire::kPacketHeaderSize + wire::kMaxPacketPayload;

// The arguments of a call have a direction, what is in them has none.
bool IsWellFormed(const wire::Message& message) {
    if (message.header.kind != wire::MessageKind::Call)
        return wire::IsWellFormed(message.tree, message.header.treeSize);
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.IsBranch() && !wire::IsWellFormed(node.data, node.size))
            return false;
    }
    return !cursor.IsMalformed();
}

} // namespace

FakeDaemon::Connection::~Connection() {
    Close();
}

void FakeDaemon::Connection::Close() {
    if (m_socket >= 0)
        close(m_socket);
    m_socket = -1;
}

bool FakeDaemon::Connection::SendPacket(std::span<const unsigned char> packet) {
    return m_socket >= 0 &&
           (packet.empty() || send(m_socket, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0);
}

void FakeDaemon::Connection::Send(const wire::MessageHeader& header, const void* tree, std::size_t treeSize) {
    for (const Packet& packet : ToPackets(header, {}, {}, tree, treeSize))
        SendPacket(packet);
}

FakeDaemon& FakeDaemon::Get() {
    static auto* daemon = new FakeDaemon;
    return *daemon;
}

bool FakeDaemon::Welcome(Connection& connection, const wire::Message& message) {
    if (message.header.kind != wire::MessageKind::Hello)
        return false;
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kWelcomeVersion, wire::kProtocolVersion);
    writer.PutValue(wire::kWelcomeEpoch, std::uint64_t{1});
    writer.PutValue(wire::kWelcomeClient, std::uint32_t{1});
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Welcome;
    connection.Send(header, tree.GetData(), tree.GetSize());
    return true;
}

void FakeDaemon::CloseAll() {
    m_connections.clear();
}

bool FakeDaemon::Connect(int socket) {
    if (!m_answer)
        return false;
    int ends[2];
    REQUIRE(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0);
    REQUIRE(dup3(ends[0], socket, O_CLOEXEC) == socket);
    close(ends[0]);
    m_connections[socket] = std::make_unique<Connection>(ends[1]);
    return true;
}

bool FakeDaemon::Serve(int socket) {
    const auto found = m_connections.find(socket);
    if (found == m_connections.end())
        return false;
    Connection& connection = *found->second;
    static unsigned char packet[kMaxPacket];
    ssize_t size = 0;
    while (connection.m_socket >= 0 && (size = recv(connection.m_socket, packet, sizeof packet, MSG_DONTWAIT)) > 0) {
        const auto result = connection.m_assembler.Feed(packet, static_cast<std::size_t>(size));
        // The client itself sends nothing malformed.
        REQUIRE(result != wire::PacketAssembler::Result::Malformed);
        if (result == wire::PacketAssembler::Result::NeedMore)
            continue;
        const wire::Buffer& bytes = connection.m_assembler.GetMessage();
        wire::Message message;
        REQUIRE(wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message));
        REQUIRE(IsWellFormed(message));
        if (message.header.kind == wire::MessageKind::Hello) {
            wire::NodeCursor cursor(message.tree, message.header.treeSize);
            wire::Node node;
            while (cursor.Next(node))
                if (node.tag == wire::kHelloRole)
                    REQUIRE(node.Get(connection.role));
        }
        m_answer(connection, message);
    }
    return true;
}

// In place of the C library's, also for the shared libraries of the program.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr* address, socklen_t size) {
    if (FakeDaemon::Get().Connect(socket))
        return 0;
    static const auto really = reinterpret_cast<int (*)(int, const sockaddr*, socklen_t)>(dlsym(RTLD_NEXT, "connect"));
    return really(socket, address, size);
}

extern "C" __attribute__((visibility("default"))) ssize_t sendmsg(int socket, const msghdr* packet, int flags) {
    static const auto really = reinterpret_cast<ssize_t (*)(int, const msghdr*, int)>(dlsym(RTLD_NEXT, "sendmsg"));
    const ssize_t sent = really(socket, packet, flags);
    const int error = errno;
    if (sent >= 0)
        FakeDaemon::Get().Serve(socket);
    errno = error;
    return sent;
}
