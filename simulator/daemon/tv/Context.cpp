#include "Context.h"

#include <cinttypes>
#include <fstream>

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "CallLine.h"
#include "Event.h"

namespace sim {

using nlohmann::json;

namespace {

long GetResidentKibibytes() {
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

} // namespace

Context::Context(Database& openDatabase, Log& openLog, unsigned clientGraceMilliseconds)
    : log(openLog), database(openDatabase), numbers(openDatabase), clients(clientGraceMilliseconds),
      dispatcher(journal, sessions, injections, openLog) {
    clients.AddReleaseHook([this](Client& client) { Release(client); });
    dispatcher.SetListener([this] { CallEnded(); });
    sessions.AddHook([this](const Session& session, bool opened) {
        log.WriteDebug(Debug::Sessions, "%" PRIu32 " of %s, client %" PRIu32 ", pipeline %" PRId32 ":%u, %s",
                       session.id, session.interface->GetName().c_str(), session.client->GetNumber(), session.profile,
                       session.screen, opened ? "opened" : "closed");
    });
}

Context::~Context() {
    while (!m_owned.empty())
        m_owned.pop_back();
}

void Context::CallEnded() {
    if (log.IsOn(Debug::Trace))
        log.WriteDebug(Debug::Trace, "%s", ToLine(journal.Describe(journal.GetEnd() - 1)).c_str());
    if (log.IsOn(Debug::MemoryUse))
        log.WriteDebug(Debug::MemoryUse, "%ld KiB", GetResidentKibibytes());
    changes.Tell();
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
