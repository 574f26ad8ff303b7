#include "IdleClients.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <wire/Packet.h>
#include <wire/Tree.h>

#include "Figure.h"

namespace bench {

namespace {

int Connect(int type, const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
    if (connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        GiveUp("an idle client or waiter could not connect");
    return descriptor;
}

std::string GetSocketPath() {
    return std::getenv("NORVEX_SOCKET");
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
        m_sockets.push_back(Connect(SOCK_SEQPACKET, GetSocketPath()));
        SayHello(m_sockets.back(), number);
    }
}

IdleClients::~IdleClients() {
    for (const int descriptor : m_sockets)
        close(descriptor);
}

Waiters::Waiters(int count) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    const char* const paths[] = {"/pipelines/1:0/service", "/debug/items/0/id", "/debug/qos", "/scan/service"};
    for (int number = 0; number < count; ++number) {
        m_sockets.push_back(Connect(SOCK_STREAM, GetSocketPath() + ".ctl"));
        const std::string request = std::string(R"({"arguments":["wait",")") + paths[number % 4] +
                                    " == " + std::to_string(1'000'000 + number) + R"(","--timeout","80000"]})" + "\n";
        char answer[4096];
        const bool isSent = write(m_sockets.back(), request.data(), request.size()) > 0;
        const ssize_t size = isSent ? read(m_sockets.back(), answer, sizeof answer) : 0;
        if (size <= 0 || !std::string_view(answer, static_cast<std::size_t>(size)).starts_with(R"({"limit")"))
            GiveUp("the TV does not let everyone wait");
    }
}

Waiters::~Waiters() {
    for (const int descriptor : m_sockets)
        close(descriptor);
}

} // namespace bench
