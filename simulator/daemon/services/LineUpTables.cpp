#include "LineUpTables.h"

#include <vector>

namespace sim {

namespace {

// The index returns the services of a number in the line-up's order, and has all columns that
// look-ups by number need: no sorting, no unneeded reads of rows. Ids are unsigned, stored with the
// same bits.
const char kSchema[] = "CREATE TABLE IF NOT EXISTS service ("
                       " antenna INTEGER NOT NULL, major INTEGER NOT NULL, minor INTEGER NOT NULL,"
                       " id INTEGER NOT NULL, type INTEGER NOT NULL, profile INTEGER NOT NULL, frequency INTEGER,"
                       " listed INTEGER NOT NULL, hidden INTEGER NOT NULL, virtual_antenna INTEGER,"
                       " captions INTEGER NOT NULL, barker INTEGER NOT NULL, name TEXT NOT NULL,"
                       " PRIMARY KEY (antenna, major, minor, id)) WITHOUT ROWID;"
                       "CREATE UNIQUE INDEX IF NOT EXISTS service_id ON service (id);"
                       "CREATE INDEX IF NOT EXISTS service_number"
                       " ON service (major, antenna, minor, id, listed, hidden, profile, type);"
                       "CREATE INDEX IF NOT EXISTS service_virtual"
                       " ON service (virtual_antenna, major) WHERE virtual_antenna IS NOT NULL;"
                       "CREATE INDEX IF NOT EXISTS service_barker ON service (antenna)"
                       " WHERE barker = 1 AND listed = 1;"
                       "CREATE TABLE IF NOT EXISTS programme ("
                       " service INTEGER NOT NULL, start INTEGER NOT NULL, duration INTEGER NOT NULL, title TEXT,"
                       " found INTEGER NOT NULL, PRIMARY KEY (service, start)) WITHOUT ROWID;"
                       "CREATE INDEX IF NOT EXISTS programme_found ON programme (service) WHERE found = 1;";

const char kAddService[] = "INSERT INTO service (antenna, major, minor, id, type, profile, frequency, listed, hidden,"
                           " virtual_antenna, captions, barker, name)"
                           " VALUES (?1, ?2, ?3, ?4, ?5, ?6, nullif(?7, 0), ?8, ?9, iif(?7 = 0, ?1, NULL), ?10, ?11,"
                           " ?12)";
const char kAddProgramme[] = "INSERT INTO programme (service, start, duration, title, found)"
                             " VALUES (?1, ?2, ?3, ?4, 0)";

// Writes the content of a text to the tables.
class Inserter : public LineUpSink {
public:
    explicit Inserter(Database& database) : m_database(database) {}

    bool Prepare() {
        return m_service.Prepare(m_database, kAddService) && m_programme.Prepare(m_database, kAddProgramme);
    }

    std::string AddService(const ServiceRecord& service) override {
        m_service.Bind(1, std::int64_t{service.antenna});
        m_service.Bind(2, std::int64_t{service.major});
        m_service.Bind(3, std::int64_t{service.minor});
        m_service.Bind(4, service.id);
        m_service.Bind(5, std::int64_t{service.GetChannelType()});
        m_service.Bind(6, std::int64_t{service.profile});
        m_service.Bind(7, std::int64_t{service.frequency});
        m_service.Bind(8, std::int64_t{service.listed});
        m_service.Bind(9, std::int64_t{service.hidden});
        m_service.Bind(10, std::int64_t{service.captions});
        m_service.Bind(11, std::int64_t{service.barker});
        m_service.Bind(12, std::string_view(service.name));
        if (m_service.Next() != Statement::Step::Done) {
            const bool used = (sqlite3_errcode(m_database.Get()) & 0xff) == SQLITE_CONSTRAINT;
            const std::string error = m_database.GetError();
            m_service.Reset();
            return used ? "expected a service id that no other service has, found it again" : error;
        }
        m_service.Reset();
        return {};
    }

    std::string AddProgramme(std::uint64_t service, const ProgrammeRecord& programme) override {
        m_programme.Bind(1, service);
        m_programme.Bind(2, std::int64_t{programme.start});
        m_programme.Bind(3, std::int64_t{programme.duration});
        if (programme.title)
            m_programme.Bind(4, std::string_view(*programme.title));
        else
            m_programme.BindNull(4);
        return m_programme.Run() ? "" : m_database.GetError();
    }

private:
    Database& m_database;
    Statement m_service;
    Statement m_programme;
};

bool CountRows(Database& database, const char* query, std::int64_t& count) {
    Statement statement;
    if (!statement.Prepare(database, query) || statement.Next() != Statement::Step::Row)
        return false;
    count = statement.Int(0);
    return true;
}

ServiceRecord ReadService(Statement& row) {
    ServiceRecord service;
    const auto number = [&row](int column) { return static_cast<std::int32_t>(row.Int(column)); };
    service.antenna = number(0);
    service.major = number(1);
    service.minor = number(2);
    service.id = row.Number64(3);
    service.frequency = number(4);
    service.profile = number(5);
    service.listed = number(6) != 0;
    service.hidden = number(7) != 0;
    service.captions = number(8) != 0;
    service.barker = number(9) != 0;
    service.name = row.Text(10);
    return service;
}

} // namespace

bool LineUpTables::Prepare() {
    return m_database.Execute(kSchema) &&
           m_facts.Prepare(m_database, "SELECT antenna, frequency, type, captions, profile, major"
                                       " FROM service WHERE id = ?1") &&
           // SQLite would not choose the index: the table's key has the same order.
           m_barker.Prepare(m_database, "SELECT id FROM service INDEXED BY service_barker WHERE barker = 1"
                                        " AND listed = 1 AND antenna = ?1 ORDER BY major, minor, id LIMIT 1") &&
           m_received.Prepare(m_database, "SELECT id FROM service WHERE antenna = ?1 AND frequency IS NOT NULL"
                                          " ORDER BY antenna, major, minor, id") &&
           m_next.Prepare(m_database, "SELECT antenna, major, minor, id, frequency, profile, listed, hidden,"
                                      " captions, barker, name FROM service"
                                      " WHERE (antenna, major, minor, id) > (?1, ?2, ?3, ?4)"
                                      " ORDER BY antenna, major, minor, id LIMIT 500") &&
           m_programmes.Prepare(m_database, "SELECT start, duration, title FROM programme"
                                            " WHERE service = ?1 AND found = 0 ORDER BY start");
}

bool LineUpTables::Replace(std::string_view text, const std::string& name, std::string& error,
                           const std::function<bool()>& keep) {
    Transaction transaction(m_database);
    Inserter inserter(m_database);
    const bool emptied =
        transaction.IsOpen() && m_database.Execute("DELETE FROM service; DELETE FROM programme") && inserter.Prepare();
    if (emptied && !ReadLineUp(text, name, inserter, error))
        return false;
    if (emptied && keep() && transaction.Commit())
        return true;
    error = name + ": " + m_database.GetError();
    return false;
}

bool LineUpTables::Count(LineUpCounts& counts) {
    const auto count = [this](const char* query, std::int64_t& rows) { return CountRows(m_database, query, rows); };
    if (!count("SELECT count(*) FROM service WHERE antenna = 0", counts.air) ||
        !count("SELECT count(*) FROM service WHERE antenna = 1", counts.cable) ||
        !count("SELECT count(*) FROM service WHERE antenna = 2", counts.satellite) ||
        !count("SELECT count(*) FROM service WHERE virtual_antenna IS NOT NULL", counts.streamed) ||
        !count("SELECT count(*) FROM (SELECT DISTINCT antenna, frequency"
               " FROM service WHERE frequency IS NOT NULL)",
               counts.transponders) ||
        !count("SELECT count(*) FROM programme", counts.programmes))
        return false;
    counts.services = counts.air + counts.cable + counts.satellite;
    return true;
}

std::optional<ServiceFacts> LineUpTables::FindFacts(std::uint64_t service) {
    std::optional<ServiceFacts> facts;
    m_facts.Bind(1, service);
    if (m_facts.Next() == Statement::Step::Row) {
        facts.emplace();
        facts->antenna = static_cast<std::int32_t>(m_facts.Int(0));
        facts->streamed = m_facts.IsNull(1);
        facts->frequency = static_cast<std::int32_t>(m_facts.Int(1));
        facts->channelType = static_cast<std::int16_t>(m_facts.Int(2));
        facts->captions = m_facts.Int(3) != 0;
        facts->profile = static_cast<std::int16_t>(m_facts.Int(4));
        facts->major = static_cast<std::int16_t>(m_facts.Int(5));
    }
    m_facts.Reset();
    return facts;
}

std::optional<std::uint64_t> LineUpTables::FindBarker(std::int32_t antenna) {
    std::optional<std::uint64_t> service;
    m_barker.Bind(1, std::int64_t{antenna});
    if (m_barker.Next() == Statement::Step::Row)
        service = m_barker.Number64(0);
    m_barker.Reset();
    return service;
}

bool LineUpTables::ForEachReceived(std::int32_t antenna, const std::function<void(std::uint64_t)>& visit) {
    m_received.Bind(1, std::int64_t{antenna});
    while (m_received.Next() == Statement::Step::Row)
        visit(m_received.Number64(0));
    const bool whole = !m_received.HasFailed();
    m_received.Reset();
    return whole;
}

bool LineUpTables::WriteNext(Place& place, LineUpWriter& writer) {
    m_next.Bind(1, place.antenna);
    m_next.Bind(2, place.major);
    m_next.Bind(3, place.minor);
    m_next.Bind(4, place.id);
    bool any = false;
    while (!place.hasFailed && m_next.Next() == Statement::Step::Row) {
        any = true;
        place = {m_next.Int(0), m_next.Int(1), m_next.Int(2), m_next.Int(3)};
        const ServiceRecord service = ReadService(m_next);
        writer.Add(service);
        m_programmes.Bind(1, service.id);
        while (m_programmes.Next() == Statement::Step::Row) {
            ProgrammeRecord programme{
                static_cast<std::int32_t>(m_programmes.Int(0)), static_cast<std::int32_t>(m_programmes.Int(1)), {}};
            if (!m_programmes.IsNull(2))
                programme.title = m_programmes.Text(2);
            writer.Add(programme);
        }
        place.hasFailed = m_programmes.HasFailed();
        m_programmes.Reset();
    }
    place.hasFailed = place.hasFailed || m_next.HasFailed();
    m_next.Reset();
    return any && !place.hasFailed;
}

} // namespace sim
