#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Changes.h"
#include "Clients.h"
#include "ControlCommands.h"
#include "Database.h"
#include "Dispatcher.h"
#include "Injections.h"
#include "Journal.h"
#include "Log.h"
#include "Part.h"
#include "Sessions.h"
#include "Settables.h"
#include "Settings.h"
#include "Signals.h"

namespace sim {

// What every part of the TV is mounted on, and the parts themselves. Everything here belongs to the
// daemon's one thread.
class Chassis {
public:
    // The database must be open.
    Chassis(Database& database, Log& log,
            unsigned clientGraceMilliseconds = Clients::kGraceMilliseconds);

    Log& log;
    Database& database;
    Settings settings;
    Clients clients;
    Sessions sessions;
    Signals signals{sessions};
    Journal journal;
    Injections injections;
    Dispatcher dispatcher;
    Changes changes;
    Settables settables;
    ControlCommands commands;

    // Mounts a piece: its interface is called, its state shown and reset, in the order of mounting.
    // The reference stays valid as long as the chassis.
    template <class T> T& Mount(std::unique_ptr<T> piece) {
        T& mounted = *piece;
        if constexpr (std::is_base_of_v<Interface, T>)
            dispatcher.Add(mounted);
        if constexpr (std::is_base_of_v<Part, T>)
            m_parts.push_back(&mounted);
        m_pieces.push_back(std::shared_ptr<T>(std::move(piece)));
        // cppcheck-suppress returnReference ; moved into m_pieces, the piece stays where it is.
        return mounted;
    }
    template <class T, class... Arguments> T& Mount(Arguments&&... arguments) {
        return Mount(std::make_unique<T>(std::forward<Arguments>(arguments)...));
    }

    const std::vector<Part*>& GetParts() const { return m_parts; }
    nlohmann::json DescribeState() const;
    // The state as far as a path ("/debug/qos") needs it: what its first step names.
    nlohmann::json DescribeStateFor(const std::string& path) const;
    // All parts as they were when the daemon was new, nothing ordered to fail, the journal empty.
    // Empty, or why not all of them are.
    std::string Reset();
    // Differs from one run to the next; shown with the clients.
    void SetEpoch(std::uint64_t epoch) { m_epoch = epoch; }

    ~Chassis();

private:
    void Release(Client& client);
    nlohmann::json DescribeClients() const;

    std::vector<Part*> m_parts;
    // Ends in the reverse order of mounting.
    std::vector<std::shared_ptr<void>> m_pieces;
    std::uint64_t m_epoch = 0;
};

} // namespace sim
