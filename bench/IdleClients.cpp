#include "IdleClients.h"

#include <cstdlib>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <wire/Packet.h>
#include <wire/Tree.h>

#include "Figure.h"

namespace bench {

namespace {

int Connect() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, std::getenv("NORVEX_SOCKET"), sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        GiveUp("an idle client could not connect");
    return descriptor;
}

void SayHello(int descriptor, int number) {
    unsigned char token[wire::kTokenSize]{};
    std::memcpy(token, &number, sizeof number);
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kHelloVersion, wire::kProtocolVersion);
    writer.PutLeaf(wire::kHelloToken, wire::NodeKind::Array, token, sizeof token);
    writer.PutValue(wire::kHelloRole, wire::Role::Calls);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Hello;
    wire::PacketSender sender(header, {}, {}, tree.GetData(), tree.GetSize());
    iovec pieces[wire::PacketSender::kMaxPieces];
    const int count = sender.Next(pieces);
    char welcome[4096];
    if (writev(descriptor, pieces, count) < 0 || read(descriptor, welcome, sizeof welcome) <= 0)
        GiveUp("an idle client was not welcomed");
}

} // namespace

IdleClients::IdleClients(int count) {
    for (int number = 1; number <= count; ++number) {
        m_sockets.push_back(Connect());
        SayHello(m_sockets.back(), number);
    }
}

IdleClients::~IdleClients() {
    for (const int descriptor : m_sockets)
        close(descriptor);
}

} // namespace bench
