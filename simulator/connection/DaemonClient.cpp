#include "DaemonClient.h"

#include <map>
#include <utility>

#include <base/DeviceLog.h>
#include <interfaces/Interfaces.h>
#include <norvex/core/MessageBuffer.h>
#include <wire/Buffer.h>
#include <wire/Tree.h>

namespace {

using std::chrono::milliseconds;

// Time for the hello of the new connection after a time-out: a daemon that only lost one reply is
// not taken for stalled.
constexpr milliseconds kProbeLimit{20};

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::weak_ptr<DaemonClient>> clients;
};

// Never destroyed: destructors of static objects close connections, too.
Registry& GetRegistry() {
    static auto* registry = new Registry;
    return *registry;
}

} // namespace

std::shared_ptr<DaemonClient> DaemonClient::Find() {
    std::string path = FindSocketPath();
    Registry& registry = GetRegistry();
    const std::lock_guard lock(registry.mutex);
    std::weak_ptr<DaemonClient>& known = registry.clients[path];
    std::shared_ptr<DaemonClient> client = known.lock();
    if (client == nullptr) {
        client = std::make_shared<DaemonClient>(std::move(path));
        known = client;
    }
    return client;
}

DaemonClient::DaemonClient(std::string path) : m_path(std::move(path)), m_limits(Limits::Find()) {}

// Records which run of the daemon has welcomed the connection. With the lock held.
void DaemonClient::Adopt(DaemonConnection& connection) {
    if (m_generation == 0 || connection.GetEpoch() != m_epoch || connection.GetClient() != m_client) {
        m_epoch = connection.GetEpoch();
        m_client = connection.GetClient();
        ++m_generation;
        m_idle.clear();
    }
    connection.generation = m_generation;
}

void DaemonClient::BecomeStalled(std::unique_ptr<DaemonConnection> probe) {
    // A hello is sent now: the first call after its answer succeeds.
    Failure failure = Failure::None;
    if (probe == nullptr)
        probe = DaemonConnection::Open(m_path, {}, milliseconds::zero(), failure);
    const std::lock_guard lock(m_mutex);
    m_idle.clear();
    m_isStalled = true;
    if (m_probe == nullptr)
        m_probe = std::move(probe);
}

void DaemonClient::DropIdle() {
    const std::lock_guard lock(m_mutex);
    m_idle.clear();
}

void DaemonClient::GiveBack(std::unique_ptr<DaemonConnection> connection) {
    const std::lock_guard lock(m_mutex);
    if (connection->generation == m_generation && !m_isStalled)
        m_idle.push_back(std::move(connection));
}

// A connection ready for a call. Null on failure.
std::unique_ptr<DaemonConnection> DaemonClient::Take(Failure& failure) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStalled) {
            std::unique_ptr<DaemonConnection> connection = TakeProbed(failure);
            if (connection != nullptr || failure != Failure::Gone)
                return connection;
        }
        if (!m_idle.empty()) {
            std::unique_ptr<DaemonConnection> connection = std::move(m_idle.back());
            m_idle.pop_back();
            return connection;
        }
    }
    return Connect({}, failure);
}

// While the daemon is stalled: the probe, if its hello has been answered. With the lock held. Gone:
// the stalled daemon has ended.
std::unique_ptr<DaemonConnection> DaemonClient::TakeProbed(Failure& failure) {
    if (m_probe == nullptr) {
        m_probe = DaemonConnection::Open(m_path, {}, milliseconds::zero(), failure);
        if (m_probe == nullptr && failure == Failure::Unresponsive) {
            failure = Failure::Stalled;
            return nullptr;
        }
    }
    if (m_probe != nullptr) {
        failure = m_probe->AwaitWelcome(milliseconds::zero());
        if (failure == Failure::Unresponsive) {
            failure = Failure::Stalled;
            return nullptr;
        }
    }
    m_isStalled = false;
    std::unique_ptr<DaemonConnection> connection = std::move(m_probe);
    if (failure != Failure::None)
        return nullptr;
    Adopt(*connection);
    return connection;
}

// Connects and waits for the welcome, both within the connect limit.
std::unique_ptr<DaemonConnection> DaemonClient::Connect(const DaemonConnection::Purpose& purpose, Failure& failure) {
    const Deadline deadline(m_limits.connect);
    std::unique_ptr<DaemonConnection> connection = DaemonConnection::Open(m_path, purpose, m_limits.connect, failure);
    if (connection != nullptr) {
        failure = deadline.HasPassed() ? Failure::Unresponsive : connection->AwaitWelcome(deadline.GetLeft());
        if (failure == Failure::None) {
            const std::lock_guard lock(m_mutex);
            Adopt(*connection);
            return connection;
        }
    }
    if (failure == Failure::Unresponsive)
        BecomeStalled(purpose.role == wire::Role::Calls ? std::move(connection) : nullptr);
    return nullptr;
}

std::unique_ptr<DaemonConnection> DaemonClient::OpenSignals(std::uint32_t session, Failure& failure) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStalled) {
            failure = Failure::Stalled;
            return nullptr;
        }
    }
    return Connect({wire::Role::Signals, session, {}}, failure);
}

// Runs the step with a connection, and keeps or drops the connection depending on the result.
template <class Step> Failure DaemonClient::WithConnection(Step step) {
    Failure failure = Failure::None;
    // A connection that ended while idle is noticed when sending. Nothing has happened by then:
    // retry on a new one.
    for (int attempt = 0; attempt < 2; ++attempt) {
        std::unique_ptr<DaemonConnection> connection = Take(failure);
        if (connection == nullptr)
            return failure;
        failure = step(*connection);
        if (failure == Failure::None || failure == Failure::Refused) {
            GiveBack(std::move(connection));
            return failure;
        }
        connection.reset();
        if (failure == Failure::Unresponsive) {
            Failure probing = Failure::None;
            std::unique_ptr<DaemonConnection> probe = DaemonConnection::Open(m_path, {}, milliseconds::zero(), probing);
            const bool answers = probe != nullptr && probe->AwaitWelcome(kProbeLimit) == Failure::None;
            if (answers) {
                {
                    const std::lock_guard lock(m_mutex);
                    Adopt(*probe);
                }
                GiveBack(std::move(probe));
            } else {
                BecomeStalled(std::move(probe));
            }
        }
        if (failure != Failure::NotSent)
            return failure;
        DropIdle();
    }
    return Failure::Gone;
}

Failure DaemonClient::Call(const Target& target, SessionKey* session, const TCMessageBuffer& arguments,
                           TCMessageBuffer& reply) {
    return WithConnection([&](DaemonConnection& connection) {
        milliseconds limit = m_limits.call;
        if (session != nullptr && session->generation != connection.generation) {
            // Both share the limit.
            const Deadline deadline(limit);
            if (const Failure failure = OpenOn(connection, *session); failure != Failure::None)
                return failure;
            limit = deadline.GetLeft();
        }
        DaemonConnection::CallHeader header{target.interfaceName, target.method, target.methodId};
        header.serial = ++m_serial;
        header.session = session != nullptr ? session->id : 0;
        return connection.Call(header, arguments.GetData(), arguments.GetSize(), limit, reply);
    });
}

Failure DaemonClient::Open(SessionKey& session) {
    return WithConnection([&](DaemonConnection& connection) { return OpenOn(connection, session); });
}

namespace {

using interfaces::NorvexSessionMethod;

DaemonConnection::CallHeader MakeSessionHeader(NorvexSessionMethod method, std::uint32_t serial) {
    return {interfaces::kTable<NorvexSessionMethod>.name, interfaces::GetMethodName(method),
            static_cast<std::int16_t>(method), serial, 0};
}

} // namespace

Failure DaemonClient::OpenOn(DaemonConnection& connection, SessionKey& session) {
    if (session.generation == connection.generation)
        return Failure::None;
    std::int32_t status = -1;
    std::uint32_t id = 0;
    bool hasStatus = false;
    bool hasId = false;
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(0, status);
    writer.PutValue(1, id);
    writer.PutText(2, session.interfaceName, wire::Direction::In);
    writer.PutValue(3, std::int32_t{session.profile}, wire::Direction::In);
    writer.PutValue(4, std::int32_t{session.screen}, wire::Direction::In);
    TCMessageBuffer reply;
    const Failure failure = connection.Call(MakeSessionHeader(NorvexSessionMethod::Open, ++m_serial), tree.GetData(),
                                            tree.GetSize(), m_limits.call, reply);
    if (failure != Failure::None)
        return failure;
    if (!wire::IsWellFormed(reply.GetData(), reply.GetSize()))
        return Failure::Malformed;
    wire::NodeCursor cursor(reply.GetData(), reply.GetSize());
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == 0)
            hasStatus = node.Get(status);
        else if (node.tag == 1)
            hasId = node.Get(id);
    }
    // Only an answer is a refusal.
    if (!hasStatus || (status >= 0 && !hasId))
        return Failure::Malformed;
    session.status = status;
    if (status < 0)
        return Failure::Refused;
    session.id = id;
    session.generation = connection.generation;
    return Failure::None;
}

void DaemonClient::Close(SessionKey& session) {
    WithConnection([&](DaemonConnection& connection) {
        if (session.generation != connection.generation)
            return Failure::None;
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        writer.PutValue(0, std::int32_t{-1});
        writer.PutValue(1, session.id, wire::Direction::In);
        TCMessageBuffer reply;
        return connection.Call(MakeSessionHeader(NorvexSessionMethod::Close, ++m_serial), tree.GetData(),
                               tree.GetSize(), m_limits.call, reply);
    });
    session.generation = 0;
}

void DaemonClient::Report(Failure failure, const std::string& interfaceName, const std::string& method) const {
    const auto print = [&](const char* what) {
        devicelog::Print("norvex-client", "%s.%s: %s (%s)", interfaceName.c_str(), method.c_str(), what,
                         m_path.c_str());
    };
    switch (failure) {
    case Failure::None:
        break;
    case Failure::Absent:
        return print("the TV service is not running");
    case Failure::Foreign:
        return print("the TV service belongs to another user");
    case Failure::Unresponsive:
        return print("the TV service is not responding: no answer within the limit");
    case Failure::Stalled:
        return print("the TV service is still not responding: no answer to the hello");
    case Failure::NotSent:
    case Failure::Gone:
        return print("connection to the TV service lost before the reply");
    case Failure::Malformed:
        return print("malformed answer from the TV service");
    case Failure::Refused:
        return print("the TV service refused the session");
    }
}
