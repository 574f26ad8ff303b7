#include "Connection.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace sim {

namespace {

constexpr std::size_t kMaxPacket = wire::kPacketHeaderSize + wire::kMaxPacketPayload;
// Packets of one long message that are read in a row before other connections have their turn.
constexpr int kPacketsInARow = 16;
// Fewer rounds for long replies; the kernel caps it at its limit.
constexpr int kSendBuffer = 4 << 20;

} // namespace

// A message being sent; does not move, since its pieces point into it.
struct Connection::Outgoing {
    Outgoing(const wire::MessageHeader& header, wire::Buffer bytes, int packetsSent)
        : tree(std::move(bytes)), sender(header, {}, {}, tree.GetData(), tree.GetSize()) {
        for (int sent = 0; sent < packetsSent; ++sent)
            sender.Next(pieces);
        count = sender.Next(pieces);
    }

    wire::Buffer tree;
    wire::PacketSender sender;
    iovec pieces[wire::PacketSender::kMaxPieces];
    int count;
};

struct Connection::Late {
    wire::MessageHeader header;
    wire::Buffer tree;
    Timer timer;
};

Connection::Connection(int fd, std::uint32_t number, Owner& owner) : m_fd(fd), m_number(number), m_owner(owner) {
    setsockopt(m_fd, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    m_watch.Start(m_fd, EPOLLIN, [this](std::uint32_t events) { Ready(events); });
}

Connection::~Connection() {
    if (m_fd >= 0)
        close(m_fd);
}

void Connection::Ready(std::uint32_t events) {
    if (events & EPOLLOUT)
        Flush();
    if (IsOpen() && (events & ~std::uint32_t{EPOLLOUT}) != 0)
        Read();
}

void Connection::Read() {
    // A client that does not read its replies is not read from.
    for (int count = 0; count < kPacketsInARow && IsOpen() && m_queue.empty(); ++count) {
        if (!ReadPacket())
            return;
    }
    if (IsOpen() && !m_queue.empty()) {
        // An error or the end of the connection while output is queued.
        char byte = 0;
        if (recv(m_fd, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0)
            End({});
    }
}

// False to stop reading for now.
bool Connection::ReadPacket() {
    // Shared by all connections: there is one thread, and a packet is processed before the next.
    static unsigned char packet[kMaxPacket];
    const ssize_t size = recv(m_fd, packet, sizeof packet, MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0) {
        if (errno != EAGAIN && errno != EINTR)
            End(errno == ECONNRESET ? std::string() : std::generic_category().message(errno));
        return false;
    }
    if (size == 0) {
        End({});
        return false;
    }
    const auto received = static_cast<std::size_t>(size);
    if (received > sizeof packet) {
        End("a packet is too long");
        return false;
    }
    switch (m_assembler.Feed(packet, received)) {
    case wire::PacketAssembler::Result::NeedMore:
        CountHeld();
        // A hello is short: before it, no memory is allocated for more.
        if (client == nullptr)
            End("long message before the hello");
        else if (!m_owner.HasRoomFor(*this, wire::kMaxPacketPayload))
            End(kTooMuch);
        else
            m_rest.Start(kRestMilliseconds, [this] { End("the rest of its message did not come in time"); });
        return IsOpen();
    case wire::PacketAssembler::Result::Malformed:
        End("malformed packet");
        return false;
    case wire::PacketAssembler::Result::Complete:
        break;
    }
    m_rest.Stop();
    const wire::Buffer& bytes = m_assembler.GetMessage();
    wire::Message message;
    if (!wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message)) {
        End("malformed message");
        return false;
    }
    m_owner.MessageArrived(*this, message);
    m_assembler.Trim(wire::kMaxPacketPayload);
    CountHeld();
    // One message per round of the loop, so that every connection has its turn.
    return false;
}

ssize_t Connection::SendPieces(int fd, iovec* pieces, int count) {
    msghdr packet{};
    packet.msg_iov = pieces;
    packet.msg_iovlen = static_cast<std::size_t>(count);
    ssize_t sent = 0;
    do {
        sent = sendmsg(fd, &packet, MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent;
}

void Connection::Send(const wire::MessageHeader& header, wire::Buffer& tree) {
    if (!IsOpen())
        return tree.Clear();
    int packetsSent = 0;
    if (m_queue.empty()) {
        wire::PacketSender sender(header, {}, {}, tree.GetData(), tree.GetSize());
        iovec pieces[wire::PacketSender::kMaxPieces];
        int count = 0;
        while ((count = sender.Next(pieces)) > 0) {
            if (SendPieces(m_fd, pieces, count) < 0)
                break;
            ++packetsSent;
        }
        if (count == 0)
            return tree.Clear();
        if (errno != EAGAIN) {
            tree.Clear();
            // The client has disconnected meanwhile; handled as usual.
            const bool gone = errno == EPIPE || errno == ECONNRESET;
            return End(gone ? std::string() : std::generic_category().message(errno));
        }
    }
    if (role != wire::Role::Calls && m_queued > kMaxQueued) {
        tree.Clear();
        return End("does not read its replies");
    }
    if (!m_owner.HasRoomFor(*this, tree.GetSize())) {
        tree.Clear();
        return End(kTooMuch);
    }
    m_queued += tree.GetSize();
    m_queue.push_back(std::make_unique<Outgoing>(header, std::exchange(tree, {}), packetsSent));
    CountHeld();
    if (m_queue.size() == 1) {
        m_watch.SetEvents(EPOLLOUT);
        m_stuck.Start(kStuckMilliseconds, [this] { End("does not read its replies"); });
    }
}

void Connection::SendLate(unsigned milliseconds, const wire::MessageHeader& header, wire::Buffer& tree) {
    if (!IsOpen())
        return tree.Clear();
    if (!m_owner.HasRoomFor(*this, tree.GetSize())) {
        tree.Clear();
        return End(kTooMuch);
    }
    const auto late = m_late.emplace(m_late.end());
    late->header = header;
    std::swap(late->tree, tree);
    m_lateBytes += late->tree.GetSize();
    CountHeld();
    late->timer.Start(milliseconds, [this, late] {
        // Taken out first: sending may end the connection, which drops all that are left.
        std::list<Late> due;
        due.splice(due.end(), m_late, late);
        m_lateBytes -= late->tree.GetSize();
        CountHeld();
        Send(late->header, late->tree);
    });
}

void Connection::Flush() {
    bool progress = false;
    while (!m_queue.empty()) {
        Outgoing& first = *m_queue.front();
        if (first.count == 0) {
            m_queued -= first.tree.GetSize();
            m_queue.pop_front();
            continue;
        }
        if (SendPieces(m_fd, first.pieces, first.count) < 0) {
            if (errno != EAGAIN)
                return End({});
            break;
        }
        progress = true;
        first.count = first.sender.Next(first.pieces);
    }
    CountHeld();
    if (m_queue.empty()) {
        m_stuck.Stop();
        m_watch.SetEvents(EPOLLIN);
    } else if (progress) {
        m_stuck.Start(kStuckMilliseconds, [this] { End("does not read its replies"); });
    }
}

void Connection::End(const std::string& why) {
    if (!IsOpen())
        return;
    m_watch.Stop();
    m_stuck.Stop();
    m_rest.Stop();
    helloDeadline.Stop();
    m_late.clear();
    close(std::exchange(m_fd, -1));
    CountHeld();
    m_owner.ConnectionEnded(*this, why);
}

// Memory of messages that are incomplete or not sent yet.
void Connection::CountHeld() {
    // A queued message takes more than its bytes, a signal ten times as much.
    constexpr std::size_t kEach = sizeof(Outgoing) + 512;
    const std::size_t held = IsOpen() ? m_assembler.GetMessage().GetSize() + m_queued + m_lateBytes +
                                            (m_queue.size() + m_late.size()) * kEach
                                      : 0;
    m_owner.held += held - std::exchange(m_held, held);
}

} // namespace sim
