#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Database.h"
#include "LineUp.h"
#include "LineUpText.h"
#include "ServiceRecord.h"

namespace sim {

// A line-up's statistics, computed when it is loaded.
struct LineUpCounts {
    std::int64_t services = 0;
    std::int64_t air = 0;
    std::int64_t cable = 0;
    std::int64_t satellite = 0;
    std::int64_t streamed = 0;
    std::int64_t transponders = 0;
    std::int64_t programmes = 0;

    bool operator==(const LineUpCounts&) const = default;
};

// The tables of services and programmes. Rows of services are in the line-up's order: by antenna,
// major, minor and id. What field numbers mean in it: values::kServiceFields.
class LineUpTables {
public:
    explicit LineUpTables(Database& database) : m_database(database) {}

    // Once: creates missing tables. False: see the database's error.
    bool Prepare();
    // Replaces the line-up; what `keep` writes to the database is committed with it. False, without
    // a change, if the text is malformed or the database fails: `error` is one line.
    bool Replace(
        std::string_view text, const std::string& name, std::string& error,
        const std::function<bool()>& keep = [] { return true; });
    // False: see the database's error.
    bool Count(LineUpCounts& counts);

    std::optional<ServiceFacts> FindFacts(std::uint64_t service);
    // The first listed barker channel of that antenna.
    std::optional<std::uint64_t> FindBarker(std::int32_t antenna);
    // Calls visit(id) for every service on a transponder of that antenna, in order. False if the
    // database failed.
    bool ForEachReceived(std::int32_t antenna, const std::function<void(std::uint64_t)>& visit);

    // The line-up as a text, in pieces of a few hundred services: writes the services after the
    // last one of the previous piece. False if there are no more, or the database failed.
    struct Place {
        std::int64_t antenna = -1;
        std::int64_t major = 0;
        std::int64_t minor = 0;
        std::int64_t id = 0;
        bool hasFailed = false;
    };
    bool WriteNext(Place& place, LineUpWriter& writer);

private:
    Database& m_database;
    Statement m_facts;
    Statement m_barker;
    Statement m_received;
    Statement m_next;
    Statement m_programmes;
};

} // namespace sim
