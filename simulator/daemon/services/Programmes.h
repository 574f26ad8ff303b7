#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <values/Values.h>

#include "Clock.h"
#include "Database.h"

namespace sim {

// What the TV knows of the programmes. They come every day at the same time, so that something is
// on whenever the clock says it is.
class Programmes {
public:
    Programmes(Database& database, const Clock& clock) : m_database(database), m_clock(clock) {}

    // Once, when the tables are there. False: the database's error tells why.
    bool Prepare();

    // Nothing when none is known of the service for now, and when it could not be looked up.
    std::optional<values::Programme> FindPresent(std::uint64_t service);
    bool HasPresent(std::uint64_t service);
    // Whether the database refused the last look-up; its error tells why.
    bool HasFailed() const { return m_hasFailed; }
    // What a tuner that is on the service's transponder finds: a programme for the rest of the
    // hour, called after the service, when none was known for now. False: the database's error
    // tells why not.
    bool Collect(std::uint64_t service);
    // Forgets what was collected.
    bool ForgetCollected();

private:
    // The row of the programme that is on at that second of the day; the statement stands on it
    // until Leave. `midnights` is 1 when it began the day before.
    bool FindRow(std::uint64_t service, std::int64_t second, std::int64_t& midnights);

    // Makes the statement ready for the next time.
    void Leave(Statement& statement);

    Database& m_database;
    const Clock& m_clock;
    Statement m_last;  // the last that begins no later than a second of the day
    Statement m_first; // when the first one begins that does so later
    Statement m_add;
    bool m_hasFailed = false;
};

} // namespace sim
