// What the simulated TV's socket receives before and after a hello: packets of up to four
// connections, in any shape and order. Whatever it sends back is whole, nobody is welcomed without
// a whole hello, and a client that keeps to the rules is welcomed afterwards.

#include <array>
#include <memory>

#include <sys/socket.h>
#include <unistd.h>

#include <wire/Packet.h>
#include <wire/Tree.h>

#include "FuzzedTv.h"
#include "Packets.h"
#include "Require.h"

namespace {

class Peer {
public:
    Peer() : m_socket(FuzzedTv::Get().Connect()) {}
    ~Peer() { close(m_socket); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    void Send(const Packet& packet) {
        if (packet.empty())
            return;
        send(m_socket, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        wire::Message message;
        if (m_sent.Feed(packet.data(), packet.size()) == wire::PacketAssembler::Result::Complete &&
            wire::ParseMessage(m_sent.GetMessage().GetData(), m_sent.GetMessage().GetSize(), message) &&
            message.header.kind == wire::MessageKind::Hello &&
            wire::IsWellFormed(message.tree, message.header.treeSize))
            ++m_hellos;
    }
    // Takes what has come; the number of messages.
    int Take() {
        int messages = 0;
        for (;;) {
            static unsigned char packet[wire::kPacketHeaderSize + wire::kMaxPacketPayload];
            const ssize_t size = recv(m_socket, packet, sizeof packet, MSG_DONTWAIT | MSG_TRUNC);
            if (size <= 0)
                return messages;
            REQUIRE(static_cast<std::size_t>(size) <= sizeof packet);
            const auto result = m_assembler.Feed(packet, static_cast<std::size_t>(size));
            REQUIRE(result != wire::PacketAssembler::Result::Malformed);
            if (result == wire::PacketAssembler::Result::NeedMore)
                continue;
            wire::Message message;
            REQUIRE(
                wire::ParseMessage(m_assembler.GetMessage().GetData(), m_assembler.GetMessage().GetSize(), message));
            REQUIRE(message.header.kind != wire::MessageKind::Hello && message.header.kind != wire::MessageKind::Call);
            REQUIRE(wire::IsWellFormed(message.tree, message.header.treeSize));
            if (message.header.kind == wire::MessageKind::Welcome)
                REQUIRE(--m_hellos >= 0);
            ++messages;
        }
    }

private:
    int m_socket;
    wire::PacketAssembler m_sent;
    int m_hellos = 0; // whole ones that have not been answered
    wire::PacketAssembler m_assembler;
};

Packet MakeHello() {
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kHelloVersion, wire::kProtocolVersion);
    writer.PutLeaf(wire::kHelloToken, wire::NodeKind::Array, "0123456789abcdef", wire::kTokenSize);
    writer.PutValue(wire::kHelloRole, wire::Role::Calls);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Hello;
    return ToPackets(header, {}, {}, tree.GetData(), tree.GetSize()).front();
}

void Play(Input& input) {
    std::array<std::unique_ptr<Peer>, 4> peers;
    while (!input.IsEmpty()) {
        const std::uint8_t order = input.Byte();
        std::unique_ptr<Peer>& peer = peers[order & 3];
        if (peer == nullptr)
            peer = std::make_unique<Peer>();
        if ((order & 4) != 0)
            peer->Send(MakeHello());
        for (const Packet& packet : TakePackets(input, 1))
            peer->Send(packet);
        FuzzedTv::Get().Settle();
        peer->Take();
        if ((order & 8) != 0)
            peer.reset();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedTv& tv = FuzzedTv::Get();
    Input input(data, size);
    Play(input);
    {
        Peer orderly;
        orderly.Send(MakeHello());
        tv.Settle();
        REQUIRE(orderly.Take() == 1);
    }
    tv.Settle();
    sim::Context& context = tv.GetContext();
    context.clients.ForEach([&](sim::Client& client) { context.sessions.CloseAll(client); });
    if (context.journal.GetEnd() > 0)
        context.Reset();
    return 0;
}
