#include "Context.h"

#include <cinttypes>

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "Event.h"

namespace sim {

using nlohmann::json;

Context::Context(Database& openDatabase, Log& openLog, unsigned clientGraceMilliseconds)
    : log(openLog), database(openDatabase), numbers(openDatabase), clients(clientGraceMilliseconds),
      dispatcher(journal, sessions, injections, openLog) {
    clients.AddReleaseHook([this](Client& client) { Release(client); });
    dispatcher.SetListener([this] { changes.Tell(); });
}

Context::~Context() {
    while (!m_owned.empty())
        m_owned.pop_back();
}

void Context::Release(Client& client) {
    const Event event(*this);
    log.Write(kOwnTag, "client %" PRIu32 " released", client.GetNumber());
    sessions.CloseAll(client);
    for (Component* part : m_components)
        part->ReleaseClient(client);
}

json Context::DescribeClients() const {
    json described{{"epoch", ToHexText(m_epoch)},
                   {"pid", getpid()},
                   {"sequence", journal.GetLastSequence()},
                   {"calls", journal.GetEnd()},
                   {"signals", signals.GetLastNumber()},
                   {"viewers", log.GetFollowerCount()},
                   {"lostLogLines", log.GetLostCount()},
                   {"injections", injections.Describe()},
                   {"clients", json::array()},
                   {"sessions", json::array()}};
    clients.ForEach([&](const Client& client) {
        described["clients"].push_back({{"number", client.GetNumber()}, {"connections", client.GetConnectionCount()}});
    });
    sessions.ForEach([&](const Session& session) {
        described["sessions"].push_back({{"id", session.id},
                                         {"interface", session.interface->GetName()},
                                         {"profile", session.profile},
                                         {"screen", session.screen},
                                         {"client", session.client->GetNumber()}});
    });
    return described;
}

json Context::DescribeState() const {
    json state{{"daemon", DescribeClients()}};
    for (const Component* part : m_components)
        state[part->GetStateName()] = part->DescribeState();
    return state;
}

json Context::DescribeStateFor(const std::string& path) const {
    const std::string step = path.substr(0, path.find('/', 1));
    json state = json::object();
    if (step == "/daemon")
        state["daemon"] = DescribeClients();
    for (const Component* part : m_components) {
        if (step == std::string("/") + part->GetStateName())
            state[part->GetStateName()] = part->DescribeState();
    }
    return state;
}

std::string Context::Reset() {
    dispatcher.Reset();
    journal.Clear();
    std::string error;
    for (Component* part : m_components) {
        if (!part->Reset() && error.empty())
            error = std::string(part->GetStateName()) + ": " + database.GetError();
    }
    return error;
}

} // namespace sim
