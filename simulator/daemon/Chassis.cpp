#include "Chassis.h"

#include <cinttypes>

#include <nlohmann/json.hpp>
#include <unistd.h>

namespace sim {

using nlohmann::json;

Chassis::Chassis(Database& openDatabase, Log& openLog, unsigned clientGraceMilliseconds)
    : log(openLog), database(openDatabase), settings(openDatabase),
      clients(clientGraceMilliseconds), dispatcher(journal, sessions, injections, openLog) {
    clients.AddReleaseHook([this](Client& client) { Release(client); });
    dispatcher.SetListener([this] { changes.Tell(); });
}

Chassis::~Chassis() {
    while (!m_pieces.empty())
        m_pieces.pop_back();
}

void Chassis::Release(Client& client) {
    log.SetSequence(journal.TakeSequence());
    log.Write(kOwnTag, "client %" PRIu32 " is gone", client.GetNumber());
    sessions.CloseAll(client);
    for (Part* part : m_parts)
        part->ReleaseClient(client);
    log.SetSequence(0);
    changes.Tell();
}

json Chassis::DescribeClients() const {
    json described{{"epoch", ToHexWord(m_epoch)},
                   {"pid", getpid()},
                   {"sequence", journal.GetLastSequence()},
                   {"calls", journal.GetEnd()},
                   {"signals", signals.GetLastNumber()},
                   {"viewers", log.GetFollowerCount()},
                   {"injections", injections.Describe()},
                   {"clients", json::array()},
                   {"sessions", json::array()}};
    clients.ForEach([&](const Client& client) {
        described["clients"].push_back(
            {{"number", client.GetNumber()}, {"connections", client.GetConnectionCount()}});
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

json Chassis::DescribeState() const {
    json state{{"daemon", DescribeClients()}};
    for (const Part* part : m_parts)
        state[part->GetStateName()] = part->DescribeState();
    return state;
}

json Chassis::DescribeStateFor(const std::string& path) const {
    const std::string step = path.substr(0, path.find('/', 1));
    json state = json::object();
    if (step == "/daemon")
        state["daemon"] = DescribeClients();
    for (const Part* part : m_parts) {
        if (step == std::string("/") + part->GetStateName())
            state[part->GetStateName()] = part->DescribeState();
    }
    return state;
}

std::string Chassis::Reset() {
    dispatcher.Reset();
    journal.Clear();
    std::string error;
    for (Part* part : m_parts) {
        if (!part->Reset() && error.empty())
            error = std::string(part->GetStateName()) + ": " + database.GetError();
    }
    changes.Tell();
    return error;
}

} // namespace sim
