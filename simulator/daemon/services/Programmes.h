#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <values/Values.h>

#include "Clock.h"
#include "Database.h"

namespace sim {

// The TV's programmes. They repeat every day at the same time, so that there is one at any time of
// the clock.
class Programmes {
public:
    Programmes(Database& database, const Clock& clock) : m_database(database), m_clock(clock) {}

    // Once, when the tables exist. False: see the database's error.
    bool Prepare();

    // Nothing if no present programme of the service is known, or the look-up failed.
    std::optional<values::Programme> FindPresent(std::uint64_t service);
    bool HasPresent(std::uint64_t service);
    // Whether the last look-up failed; see the database's error.
    bool HasFailed() const { return m_hasFailed; }
    // What a tuner on the service's transponder finds: a programme for the rest of the hour, named
    // after the service, if no present one was known. False: see the database's error.
    bool Collect(std::uint64_t service);
    // Removes collected programmes.
    bool ForgetCollected();

private:
    // The row of the programme that is on at that second of the day; the statement stays on it
    // until Leave. `midnights` is 1 if it began the day before.
    bool FindRow(std::uint64_t service, std::int64_t second, std::int64_t& midnights);

    // Resets the statement.
    void Leave(Statement& statement);

    Database& m_database;
    const Clock& m_clock;
    Statement m_last;  // the last that begins at or before a second of the day
    Statement m_first; // the begin of the first one after it
    Statement m_add;
    bool m_hasFailed = false;
};

} // namespace sim
