#include "Server.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>

#include <sys/socket.h>
#include <unistd.h>

#include <wire/Tree.h>

namespace sim {

namespace {

std::uint64_t MakeEpoch() {
    std::random_device random;
    return (std::uint64_t{random()} << 32) | random();
}

struct HelloContent {
    std::uint32_t version = 0;
    std::uint32_t role = 0;
    std::uint32_t session = 0;
    Token token{};
    std::string_view tag;
    bool hasToken = false;
};

// False when it is malformed.
bool ReadHello(const wire::Message& message, HelloContent& hello) {
    if (!wire::IsWellFormed(message.tree, message.header.treeSize))
        return false;
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node)) {
        bool good = true;
        switch (node.tag) {
        case wire::kHelloVersion:
            good = node.Get(hello.version);
            break;
        case wire::kHelloToken:
            good = node.kind == wire::NodeKind::Array && node.size == hello.token.size();
            if (good)
                std::memcpy(hello.token.data(), node.data, node.size);
            hello.hasToken = good;
            break;
        case wire::kHelloRole:
            good = node.Get(hello.role);
            break;
        case wire::kHelloSession:
            good = node.Get(hello.session);
            break;
        case wire::kHelloLogTag:
            good = wire::GetText(node, hello.tag);
            break;
        default: // of a later version
            break;
        }
        if (!good)
            return false;
    }
    return hello.hasToken && hello.role <= static_cast<std::uint32_t>(wire::Role::Log);
}

} // namespace

Server::Server(Clients& clients, Dispatcher& dispatcher, Signals& signals, Changes& changes, Log& log)
    : m_clients(clients), m_dispatcher(dispatcher), m_signals(signals), m_changes(changes), m_log(log),
      m_epoch(MakeEpoch()) {}

Server::~Server() = default;

bool Server::Open(const std::string& path, std::string& error) {
    return m_listener.Open(
        path, SOCK_SEQPACKET, [this](int fd) { Accept(fd); },
        [this](const std::string& line) { m_log.Write(kOwnTag, "%s", line.c_str()); }, error);
}

void Server::Accept(int fd) {
    if (m_connections.size() >= kMaxConnections && m_withoutHello.empty()) {
        m_log.Write(kOwnTag, "refused a connection: %zu are open", m_connections.size());
        close(fd);
        return;
    }
    if (m_withoutHello.size() >= kMaxWithoutHello || m_connections.size() >= kMaxConnections)
        m_withoutHello.front()->End("evicted without a hello");
    Connection::Owner& owner = *this;
    m_connections.push_back(std::make_unique<Connection>(fd, ++m_lastNumber, owner));
    Connection& connection = *m_connections.back();
    m_withoutHello.push_back(&connection);
    connection.helloDeadline.Start(kHelloMilliseconds, [&connection] { connection.End("no hello in time"); });
    // The hello has usually arrived already; after it the connection cannot be evicted.
    connection.Read();
}

void Server::MessageArrived(Connection& connection, const wire::Message& message) {
    if (message.header.kind == wire::MessageKind::Hello)
        return Hello(connection, message);
    if (connection.client == nullptr)
        return connection.End("call before the hello");
    if (message.header.kind != wire::MessageKind::Call || connection.role != wire::Role::Calls)
        return connection.End("message that clients do not send");
    m_dispatcher.Handle(connection, message);
}

void Server::Hello(Connection& connection, const wire::Message& message) {
    HelloContent hello;
    if (!ReadHello(message, hello))
        return connection.End("malformed hello");
    if (hello.version != wire::kProtocolVersion)
        return connection.End("unsupported version " + std::to_string(hello.version));
    if (connection.client == nullptr) {
        connection.helloDeadline.Stop();
        m_withoutHello.remove(&connection);
        connection.client = &m_clients.Connected(hello.token);
        connection.role = static_cast<wire::Role>(hello.role);
        connection.tag = hello.tag;
        if (connection.client->GetConnectionCount() > kMaxOfOneClient)
            return connection.End("client " + std::to_string(connection.client->GetNumber()) + " already has " +
                                  std::to_string(kMaxOfOneClient) + " connections");
        if (connection.role == wire::Role::Log) {
            m_followers.push_back(&connection);
            FollowersChanged();
        }
        if (connection.role == wire::Role::Signals && !m_signals.Attach(hello.session, connection))
            return connection.End("requested signals of session " + std::to_string(hello.session) +
                                  ", which is not its own");
        ClientsChanged();
    } else if (connection.client->GetToken() != hello.token) {
        // A client repeats its hello to find out whether a stalled daemon responds again.
        return connection.End("changed its token");
    }
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kWelcomeVersion, wire::kProtocolVersion);
    writer.PutValue(wire::kWelcomeEpoch, m_epoch);
    writer.PutValue(wire::kWelcomeClient, connection.client->GetNumber());
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Welcome;
    header.serial = message.header.serial;
    connection.Send(header, tree);
}

void Server::ConnectionEnded(Connection& connection, const std::string& why) {
    if (!why.empty())
        m_log.Write(kOwnTag, "dropped connection %u: %s", connection.GetNumber(), why.c_str());
    m_withoutHello.remove(&connection);
    if (m_followers.remove(&connection) > 0)
        FollowersChanged();
    m_signals.Detach(connection);
    if (connection.client != nullptr)
        m_clients.Disconnected(*connection.client);
    ClientsChanged();
    const auto found = std::find_if(m_connections.begin(), m_connections.end(),
                                    [&](const auto& candidate) { return candidate.get() == &connection; });
    m_ended.push_back(std::move(*found));
    m_connections.erase(found);
    m_cleanUp.StartSoon([this] { m_ended.clear(); });
}

bool Server::HasRoomFor(Connection& connection, std::size_t size) {
    while (held + size > kMaxHeld) {
        std::map<const Client*, std::size_t> shares{{connection.client, size}};
        for (const auto& each : m_connections)
            shares[each->client] += each->GetHeld();
        const auto most = std::max_element(shares.begin(), shares.end(),
                                           [](const auto& a, const auto& b) { return a.second < b.second; });
        if (most->second <= shares[connection.client])
            return false;
        Connection* largest = nullptr;
        for (const auto& each : m_connections) {
            if (each->client == most->first && (largest == nullptr || each->GetHeld() > largest->GetHeld()))
                largest = each.get();
        }
        largest->End(Connection::kTooMuch);
    }
    return true;
}

// Also whether a subscriber can be reached has changed.
void Server::ClientsChanged() {
    m_changes.Mark("/daemon/clients");
    m_changes.Mark("/subscribers");
}

void Server::FollowersChanged() {
    m_log.SetFollowerCount(m_followers.size());
    m_changes.Mark("/daemon/viewers");
}

void Server::PushLine(std::string_view tag, std::string_view line) {
    // Dropping a follower writes another log line, which calls this function again: do not iterate
    // over the list meanwhile.
    std::vector<Connection*> followers;
    for (Connection* follower : m_followers) {
        if (follower->tag == tag)
            followers.push_back(follower);
    }
    wire::Buffer tree;
    for (Connection* follower : followers) {
        tree.Clear();
        wire::TreeWriter(tree).PutText(wire::kLogLine, line);
        wire::MessageHeader header;
        header.kind = wire::MessageKind::Log;
        follower->Send(header, tree);
    }
}

} // namespace sim
