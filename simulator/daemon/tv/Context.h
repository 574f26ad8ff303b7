#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <base/Log.h>

#include "Changes.h"
#include "Clients.h"
#include "Component.h"
#include "ControlCommands.h"
#include "Database.h"
#include "Dispatcher.h"
#include "Injections.h"
#include "Journal.h"
#include "NumberStore.h"
#include "Sessions.h"
#include "Settings.h"
#include "Signals.h"

namespace sim {

// Everything that the TV's components share, and the components themselves. To be used on the
// daemon's thread only.
class Context {
public:
    // The database must be open.
    Context(Database& database, Log& log, unsigned clientGraceMilliseconds = Clients::kGraceMilliseconds);

    Log& log;
    Database& database;
    NumberStore numbers;
    Clients clients;
    Sessions sessions;
    Signals signals{sessions};
    Journal journal;
    Injections injections;
    Dispatcher dispatcher;
    Changes changes;
    Settings settings;
    ControlCommands commands;

    // Registers a component: its interface is called, its state shown and reset, in the order of
    // registration. The reference stays valid as long as the context.
    template <class T> T& Register(std::unique_ptr<T> component) {
        T& registered = *component;
        if constexpr (std::is_base_of_v<Interface, T>)
            dispatcher.Add(registered);
        if constexpr (std::is_base_of_v<Component, T>)
            m_components.push_back(&registered);
        m_owned.push_back(std::shared_ptr<T>(std::move(component)));
        // cppcheck-suppress returnReference ; moved into m_owned, the component stays where it is.
        return registered;
    }
    template <class T, class... Arguments> T& Register(Arguments&&... arguments) {
        return Register(std::make_unique<T>(std::forward<Arguments>(arguments)...));
    }

    nlohmann::json DescribeState() const;
    // A part of the state: a component, or a value of one ("/debug/qos"). "calls/IAVControl.MuteVideo"
    // is how often an operation has been called. Null if there is none.
    nlohmann::json DescribePart(const std::string& path) const;
    // Changes a setting; false, with the reason in `error`, if it is refused.
    bool Set(const std::string& name, const std::vector<std::string>& values, std::string& error);
    // Resets all components, removes injected failures and empties the journal. Returns an empty
    // text, or why not all components could be reset.
    std::string Reset();
    // Differs for each start of the daemon; shown with the clients.
    void SetEpoch(std::uint64_t epoch) { m_epoch = epoch; }

    ~Context();

private:
    // Writes what the debug menu wants to know of each call.
    void CallEnded(const Operation* operation);
    void Release(Client& client);
    // Of the daemon itself; with a name only that value.
    nlohmann::json DescribeDaemon(const std::string& only) const;

    std::vector<Component*> m_components;
    // Destroyed in reverse order of registration.
    std::vector<std::shared_ptr<void>> m_owned;
    std::uint64_t m_epoch = 0;
};

} // namespace sim
