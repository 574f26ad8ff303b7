#include "DaemonConnection.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <set>

#include <fcntl.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>
#include <wire/Tree.h>

#include "Environment.h"

namespace {

using std::chrono::milliseconds;

constexpr std::size_t kMaxPacket = wire::kPacketHeaderSize + wire::kMaxPacketPayload;
// A socket's limit is only set again when it differs by more than this.
constexpr milliseconds kLimitSlack{5};

void SetLimit(int socket, int which, milliseconds limit) {
    // Zero would mean no limit at all.
    const auto whole = std::max(limit, milliseconds(1));
    timeval time{};
    time.tv_sec = whole.count() / 1000;
    time.tv_usec = static_cast<suseconds_t>(whole.count() % 1000 * 1000);
    setsockopt(socket, SOL_SOCKET, which, &time, sizeof time);
}

bool IsTimeout(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

Failure Connect(int socket, const sockaddr_un& address, milliseconds limit) {
    const Deadline deadline(limit);
    const bool mayWait = limit > milliseconds::zero();
    while (true) {
        if (mayWait)
            SetLimit(socket, SO_SNDTIMEO, deadline.GetLeft());
        if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            return Failure::None;
        // A full backlog; a blocking connect has waited until the limit.
        if (IsTimeout(errno))
            return Failure::Unresponsive;
        if (errno != EINTR)
            return Failure::Absent;
        if (deadline.HasPassed())
            return Failure::Unresponsive;
    }
}

bool IsOwnProcess(int socket) {
    ucred client{};
    socklen_t size = sizeof client;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &client, &size) == 0 && client.uid == geteuid();
}

// The sockets of this process's connections. In a child of fork, which would share them with its
// parent, each is replaced by one that is not connected.
class OpenSockets {
public:
    // Never destroyed: destructors of static objects close connections, too.
    static OpenSockets& Get() {
        static auto* sockets = new OpenSockets;
        return *sockets;
    }

    void Add(int socket) {
        const std::lock_guard lock(m_mutex);
        m_sockets.insert(socket);
    }
    void Close(int socket) {
        const std::lock_guard lock(m_mutex);
        m_sockets.erase(socket);
        close(socket);
    }

private:
    OpenSockets() {
        pthread_atfork([] { Get().m_mutex.lock(); }, [] { Get().m_mutex.unlock(); }, [] { Get().BecomeChild(); });
    }

    void BecomeChild() {
        ClientToken::Renew();
        for (const int shared : m_sockets) {
            close(shared);
            const int own = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
            if (own >= 0 && own != shared) {
                dup3(own, shared, O_CLOEXEC);
                close(own);
            }
        }
        m_mutex.unlock();
    }

    std::mutex m_mutex;
    std::set<int> m_sockets;
};

} // namespace

DaemonConnection::DaemonConnection(int socket)
    : m_socket(socket), m_packet(std::make_unique_for_overwrite<unsigned char[]>(kMaxPacket)) {
    OpenSockets::Get().Add(socket);
}

DaemonConnection::~DaemonConnection() {
    OpenSockets::Get().Close(m_socket);
}

std::unique_ptr<DaemonConnection> DaemonConnection::Open(const std::string& path, const Purpose& purpose,
                                                         milliseconds limit, Failure& failure) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    failure = Failure::Absent;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return nullptr;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int type = SOCK_SEQPACKET | SOCK_CLOEXEC;
    const bool mayWait = limit > milliseconds::zero();
    const int socket = ::socket(AF_UNIX, mayWait ? type : type | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return nullptr;
    std::unique_ptr<DaemonConnection> connection(new DaemonConnection(socket));
    failure = Connect(socket, address, limit);
    if (failure != Failure::None)
        return nullptr;
    if (!IsOwnProcess(socket)) {
        failure = Failure::Foreign;
        return nullptr;
    }
    if (!mayWait)
        fcntl(socket, F_SETFL, 0);
    failure = connection->SayHello(purpose);
    return failure == Failure::None ? std::move(connection) : nullptr;
}

Failure DaemonConnection::SayHello(const Purpose& purpose) {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kHelloVersion, wire::kProtocolVersion);
    writer.PutLeaf(wire::kHelloToken, wire::NodeKind::Array, ClientToken::Get().bytes, wire::kTokenSize);
    writer.PutValue(wire::kHelloRole, purpose.role);
    if (purpose.role == wire::Role::Signals)
        writer.PutValue(wire::kHelloSession, purpose.session);
    if (purpose.role == wire::Role::Log)
        writer.PutText(wire::kHelloLogTag, purpose.logTag);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Hello;
    wire::PacketSender sender(header, {}, {}, tree.GetData(), tree.GetSize());
    // The first packet on a new socket always fits.
    const Failure failure = Send(sender, Deadline(milliseconds(1)));
    return failure == Failure::NotSent ? Failure::Gone : failure;
}

void DaemonConnection::ArmReceive(milliseconds limit) {
    if (std::chrono::abs(limit - m_receiveLimit) <= kLimitSlack && m_receiveLimit.count() > 0)
        return;
    SetLimit(m_socket, SO_RCVTIMEO, limit);
    m_receiveLimit = limit;
}

void DaemonConnection::ArmSend(milliseconds limit) {
    if (std::chrono::abs(limit - m_sendLimit) <= kLimitSlack && m_sendLimit.count() > 0)
        return;
    SetLimit(m_socket, SO_SNDTIMEO, limit);
    m_sendLimit = limit;
}

Failure DaemonConnection::Send(wire::PacketSender& sender, const Deadline& deadline) {
    iovec pieces[wire::PacketSender::kMaxPieces];
    msghdr packet{};
    packet.msg_iov = pieces;
    bool isFirst = true;
    for (int count = 0; (count = sender.Next(pieces)) > 0; isFirst = false) {
        packet.msg_iovlen = static_cast<std::size_t>(count);
        ArmSend(deadline.GetLeft());
        while (sendmsg(m_socket, &packet, MSG_NOSIGNAL) < 0) {
            if (IsTimeout(errno))
                return Failure::Unresponsive;
            if (errno != EINTR)
                return isFirst ? Failure::NotSent : Failure::Gone;
            if (deadline.HasPassed())
                return Failure::Unresponsive;
            ArmSend(deadline.GetLeft());
        }
    }
    return Failure::None;
}

// Receives one packet into m_packet; `size` is its length.
Failure DaemonConnection::Receive(const Deadline& deadline, std::size_t& size) {
    while (true) {
        const auto left = deadline.GetLeft();
        if (left == milliseconds::zero())
            return Failure::Unresponsive;
        ArmReceive(left);
        const ssize_t received = recv(m_socket, m_packet.get(), kMaxPacket, MSG_TRUNC);
        if (received > 0) {
            size = static_cast<std::size_t>(received);
            return size <= kMaxPacket ? Failure::None : Failure::Malformed;
        }
        if (received == 0)
            return Failure::Gone;
        if (IsTimeout(errno))
            return Failure::Unresponsive;
        if (errno != EINTR)
            return Failure::Gone;
    }
}

Failure DaemonConnection::Call(const CallHeader& call, const void* tree, std::size_t treeSize, milliseconds limit,
                               TCMessageBuffer& reply) {
    const Deadline deadline(limit);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Call;
    header.methodId = call.methodId;
    header.serial = call.serial;
    header.session = call.session;
    wire::PacketSender sender(header, call.interfaceName, call.method, tree, treeSize);
    reply.Clear();
    Failure failure = Send(sender, deadline);
    if (failure == Failure::None)
        failure = ReceiveReply(call.serial, deadline, reply);
    if (failure != Failure::None)
        reply.Clear();
    return failure;
}

Failure DaemonConnection::ReceiveReply(std::uint32_t serial, const Deadline& deadline, TCMessageBuffer& reply) {
    while (true) {
        std::size_t size = 0;
        if (const Failure failure = Receive(deadline, size); failure != Failure::None)
            return failure;
        bool more = false;
        wire::MessageHeader header;
        const unsigned char* payload = m_packet.get() + wire::kPacketHeaderSize;
        if (!wire::DecodePacketHeader(m_packet.get(), size, more) ||
            !wire::DecodeMessageHeader(payload, size - wire::kPacketHeaderSize, header))
            return Failure::Malformed;
        const std::size_t here = size - wire::kPacketHeaderSize;
        const std::size_t whole = header.GetMessageSize();
        // As many packets as the length requires, all but the last full.
        if (here != std::min(whole, wire::kMaxPacketPayload) || more != (here < whole))
            return Failure::Malformed;
        // An answer to an earlier call is skipped, one to a later call is malformed.
        if (header.kind != wire::MessageKind::Reply || static_cast<std::int32_t>(header.serial - serial) > 0)
            return Failure::Malformed;
        const std::size_t before = wire::kMessageHeaderSize + header.interfaceSize + header.methodSize;
        reply.Append(payload + before, here - before);
        if (const Failure failure = ReceiveRest(deadline, whole - here, reply); failure != Failure::None)
            return failure;
        if (header.serial == serial)
            return Failure::None;
        reply.Clear();
    }
}

// Further packets of a long message are received in place. Memory is allocated as they arrive, not
// as the header announces.
Failure DaemonConnection::ReceiveRest(const Deadline& deadline, std::size_t size, TCMessageBuffer& reply) {
    while (size > 0) {
        const auto left = deadline.GetLeft();
        if (left == milliseconds::zero())
            return Failure::Unresponsive;
        ArmReceive(left);
        const std::size_t expected = std::min(size, wire::kMaxPacketPayload);
        unsigned char head[wire::kPacketHeaderSize];
        iovec pieces[2] = {{head, sizeof head}, {reply.Extend(expected), expected}};
        msghdr packet{};
        packet.msg_iov = pieces;
        packet.msg_iovlen = 2;
        ssize_t received = 0;
        do
            received = recvmsg(m_socket, &packet, MSG_TRUNC);
        while (received < 0 && errno == EINTR && !deadline.HasPassed());
        if (received == 0)
            return Failure::Gone;
        if (received < 0)
            return IsTimeout(errno) || errno == EINTR ? Failure::Unresponsive : Failure::Gone;
        bool more = false;
        if (static_cast<std::size_t>(received) != wire::kPacketHeaderSize + expected ||
            !wire::DecodePacketHeader(head, sizeof head, more) || more != (expected < size))
            return Failure::Malformed;
        size -= expected;
    }
    return Failure::None;
}

Failure DaemonConnection::AwaitWelcome(milliseconds limit) {
    wire::Message message;
    if (limit == milliseconds::zero()) {
        const Failure failure = TakePushed(message);
        return failure == Failure::None ? ReadWelcome(message) : failure;
    }
    std::size_t size = 0;
    if (const Failure failure = Receive(Deadline(limit), size); failure != Failure::None)
        return failure;
    if (m_assembler.Feed(m_packet.get(), size) != wire::PacketAssembler::Result::Complete ||
        !wire::ParseMessage(m_assembler.GetMessage().GetData(), m_assembler.GetMessage().GetSize(), message))
        return Failure::Malformed;
    return ReadWelcome(message);
}

Failure DaemonConnection::ReadWelcome(const wire::Message& message) {
    if (message.header.kind != wire::MessageKind::Welcome || !wire::IsWellFormed(message.tree, message.header.treeSize))
        return Failure::Malformed;
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    std::uint32_t version = 0;
    bool hasEpoch = false;
    while (cursor.Next(node)) {
        if (node.tag == wire::kWelcomeVersion)
            node.Get(version);
        else if (node.tag == wire::kWelcomeEpoch)
            hasEpoch = node.Get(m_epoch);
        else if (node.tag == wire::kWelcomeClient)
            node.Get(m_client);
    }
    return version == wire::kProtocolVersion && hasEpoch ? Failure::None : Failure::Malformed;
}

Failure DaemonConnection::TakePushed(wire::Message& message) {
    while (true) {
        const ssize_t size = recv(m_socket, m_packet.get(), kMaxPacket, MSG_TRUNC | MSG_DONTWAIT);
        if (size == 0)
            return Failure::Gone;
        if (size < 0) {
            if (errno == EINTR)
                continue;
            return IsTimeout(errno) ? Failure::Unresponsive : Failure::Gone;
        }
        if (static_cast<std::size_t>(size) > kMaxPacket)
            return Failure::Malformed;
        switch (m_assembler.Feed(m_packet.get(), static_cast<std::size_t>(size))) {
        case wire::PacketAssembler::Result::NeedMore:
            continue;
        case wire::PacketAssembler::Result::Malformed:
            return Failure::Malformed;
        case wire::PacketAssembler::Result::Complete:
            break;
        }
        const wire::Buffer& bytes = m_assembler.GetMessage();
        return wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message) ? Failure::None : Failure::Malformed;
    }
}
