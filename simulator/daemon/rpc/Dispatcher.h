#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <base/Log.h>
#include <wire/Message.h>

#include "Connection.h"
#include "Injections.h"
#include "Interface.h"
#include "Journal.h"
#include "Sessions.h"

namespace sim {

// Executes calls: looks up the operation, checks the arguments against its list, runs it and sends
// the reply. Writes the journal and injects failures.
class Dispatcher {
public:
    Dispatcher(Journal& journal, Sessions& sessions, Injections& injections, Log& log)
        : m_journal(journal), m_sessions(sessions), m_injections(injections), m_log(log) {}

    // The interface must outlive the dispatcher. std::logic_error if it lacks operations.
    void Add(Interface& interface);
    const std::vector<Interface*>& GetInterfaces() const { return m_interfaces; }
    Interface* Find(std::string_view interfaceName) const;
    // Operations by the name that users type: "IAVControl.MuteVideo" or with the interface's full
    // name; several if the name is overloaded, none if it is unknown.
    std::vector<Operation*> FindOperations(std::string_view name) const;

    // Answers a call on its connection.
    void Handle(Connection& connection, const wire::Message& message);

    // Called after each call, with its operation; null for an unknown one.
    void SetListener(std::function<void(const Operation*)> listener) { m_listener = std::move(listener); }
    // Resets the operations' call counters and removes injected failures.
    void Reset();

private:
    // Runs the operation. Returns why it could not run, or an empty text.
    std::string Run(Connection& connection, const wire::Message& message, Interface& interface, Operation& method,
                    std::uint64_t sequence);

    Journal& m_journal;
    Sessions& m_sessions;
    Injections& m_injections;
    Log& m_log;
    std::vector<Interface*> m_interfaces;
    std::unordered_map<std::string_view, Interface*> m_byName;
    wire::Buffer m_reply;
    std::function<void(const Operation*)> m_listener;
};

} // namespace sim
