#include "Context.h"

#include <cinttypes>
#include <fstream>

#include <unistd.h>

#include <base/Number.h>
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
    dispatcher.SetListener([this](const Operation* operation) { CallEnded(operation); });
    sessions.AddHook([this](const Session& session, bool opened) {
        changes.Mark("/daemon/sessions");
        log.WriteDebug(Debug::Sessions, "%" PRIu32 " of %s, client %" PRIu32 ", pipeline %" PRId32 ":%u, %s",
                       session.id, session.interface->GetName().c_str(), session.client->GetNumber(), session.profile,
                       session.screen, opened ? "opened" : "closed");
    });
}

Context::~Context() {
    while (!m_owned.empty())
        m_owned.pop_back();
}

void Context::CallEnded(const Operation* operation) {
    if (log.IsOn(Debug::Trace))
        log.WriteDebug(Debug::Trace, "%s", ToLine(journal.Describe(journal.GetEnd() - 1)).c_str());
    if (log.IsOn(Debug::MemoryUse))
        log.WriteDebug(Debug::MemoryUse, "%ld KiB", GetResidentKibibytes());
    changes.Tell();
    if (!changes.IsWatched())
        return;
    for (const char* path :
         {"/daemon/calls", "/daemon/sequence", "/daemon/lostLogLines", "/daemon/injections", "/clock"})
        changes.Mark(path);
    if (operation != nullptr)
        changes.Mark("calls/" + operation->interface->GetName() + "." + operation->name);
}

void Context::Release(Client& client) {
    const Event event(*this);
    changes.Mark("/daemon/clients");
    log.Write(kOwnTag, "client %" PRIu32 " released", client.GetNumber());
    sessions.CloseAll(client);
    for (Component* part : m_components)
        part->ReleaseClient(client);
}

json Context::DescribeDaemon(const std::string& only) const {
    json described = json::object();
    const auto add = [&](const char* name, const auto& describe) {
        if (only.empty() || only == name)
            described[name] = describe();
    };
    add("epoch", [this] { return ToHexText(m_epoch); });
    add("pid", [] { return getpid(); });
    add("sequence", [this] { return journal.GetLastSequence(); });
    add("calls", [this] { return journal.GetEnd(); });
    add("signals", [this] { return signals.GetLastNumber(); });
    add("viewers", [this] { return log.GetFollowerCount(); });
    add("lostLogLines", [this] { return log.GetLostCount(); });
    add("injections", [this] { return injections.Describe(); });
    add("clients", [this] {
        json all = json::array();
        clients.ForEach([&](const Client& client) {
            all.push_back({{"number", client.GetNumber()}, {"connections", client.GetConnectionCount()}});
        });
        return all;
    });
    add("sessions", [this] {
        json all = json::array();
        sessions.ForEach([&](const Session& session) {
            all.push_back({{"id", session.id},
                           {"interface", session.interface->GetName()},
                           {"profile", session.profile},
                           {"screen", session.screen},
                           {"client", session.client->GetNumber()}});
        });
        return all;
    });
    return only.empty() ? described : described.value(only, json());
}

json Context::DescribeState() const {
    json state{{"daemon", DescribeDaemon({})}};
    for (const Component* part : m_components)
        state[part->GetStateName()] = part->DescribeState();
    return state;
}

json Context::DescribePart(const std::string& path) const {
    constexpr std::string_view kCalls = "calls/";
    if (path.starts_with(kCalls)) {
        std::uint64_t calls = 0;
        for (const Operation* each : dispatcher.FindOperations(path.substr(kCalls.size())))
            calls += each->calls;
        return calls;
    }
    const json::json_pointer pointer(path);
    const bool isWhole = pointer.parent_pointer().empty();
    const std::string name = isWhole ? pointer.back() : pointer.parent_pointer().back();
    if (name == "daemon")
        return DescribeDaemon(isWhole ? std::string() : pointer.back());
    for (const Component* part : m_components) {
        if (name == part->GetStateName())
            return isWhole ? part->DescribeState() : part->DescribeValue(pointer.back());
    }
    return {};
}

json Component::DescribeValue(const std::string& name) const {
    const json state = DescribeState();
    std::size_t index = 0;
    if (state.is_object())
        return state.value(name, json());
    return ParseNumber(name, index) && index < state.size() ? state[index] : json();
}

bool Context::Set(const std::string& name, const std::vector<std::string>& values, std::string& error) {
    changes.Mark({});
    return settings.Set(name, values, error);
}

std::string Context::Reset() {
    changes.Mark({});
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
