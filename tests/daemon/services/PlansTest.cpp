#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "LineUpTv.h"

namespace {

// SQLite's plan of each statement of the daemon but for the clients' queries; tables are scanned only where it says so.
const std::map<std::string, std::string> kPlans{
    // Of one service, one number, one antenna.
    {"SELECT antenna, frequency, type, captions, profile, major FROM service WHERE id = ?1",
     "SEARCH service USING INDEX service_id (id=?)"},
    {"SELECT id FROM service INDEXED BY service_barker WHERE barker = 1 AND listed = 1 AND antenna = ?1 ORDER BY major, "
     "minor, id LIMIT 1",
     "SEARCH service USING INDEX service_barker (antenna=?)"},
    {"SELECT id FROM service WHERE antenna = ?1 AND frequency IS NOT NULL ORDER BY antenna, major, minor, id",
     "SEARCH service USING PRIMARY KEY (antenna=?)"},
    {"SELECT antenna, major, minor, id, frequency, profile, listed, hidden, captions, barker, name FROM service WHERE "
     "(antenna, major, minor, id) > (?1, ?2, ?3, ?4) ORDER BY antenna, major, minor, id LIMIT 500",
     "SEARCH service USING PRIMARY KEY ((antenna,major,minor,id)>(?,?,?,?))"},
    {"SELECT start, duration, title FROM programme WHERE service = ?1 AND found = 0 ORDER BY start",
     "SEARCH programme USING PRIMARY KEY (service=?)"},
    {"SELECT start, duration, title FROM programme WHERE service = ?1 AND start <= ?2 ORDER BY start DESC LIMIT 1",
     "SEARCH programme USING PRIMARY KEY (service=? AND start<?)"},
    {"SELECT start FROM programme WHERE service = ?1 AND start > ?2 ORDER BY start LIMIT 1",
     "SEARCH programme USING PRIMARY KEY (service=? AND start>?)"},
    {"INSERT INTO programme (service, start, duration, title, found) SELECT ?1, ?2, ?3, name, 1 FROM service WHERE id = "
     "?1",
     "SEARCH service USING INDEX service_id (id=?)"},
    {"SELECT key, value FROM setting WHERE part = ?1 ORDER BY key", "SEARCH setting USING PRIMARY KEY (part=?)"},
    {"DELETE FROM setting WHERE part = ?1", "SEARCH setting USING PRIMARY KEY (part=?)"},
    {"INSERT INTO setting (part, key, value) VALUES (?1, ?2, ?3) ON CONFLICT (part, key) DO UPDATE SET value = ?3", ""},
    // The collected programmes only, which the index holds.
    {"DELETE FROM programme WHERE found = 1", "SCAN programme USING INDEX programme_found"},
    // A line-up is loaded: the whole of it.
    {"DELETE FROM service", ""},
    {"DELETE FROM programme", ""},
    {"INSERT INTO service (antenna, major, minor, id, type, profile, frequency, listed, hidden, virtual_antenna, "
     "captions, barker, name) VALUES (?1, ?2, ?3, ?4, ?5, ?6, nullif(?7, 0), ?8, ?9, iif(?7 = 0, ?1, NULL), ?10, ?11, "
     "?12)",
     ""},
    {"INSERT INTO programme (service, start, duration, title, found) VALUES (?1, ?2, ?3, ?4, 0)", ""},
    {"SELECT count(*) FROM service WHERE antenna = 0", "SEARCH service USING PRIMARY KEY (antenna=?)"},
    {"SELECT count(*) FROM service WHERE antenna = 1", "SEARCH service USING PRIMARY KEY (antenna=?)"},
    {"SELECT count(*) FROM service WHERE antenna = 2", "SEARCH service USING PRIMARY KEY (antenna=?)"},
    {"SELECT count(*) FROM service WHERE virtual_antenna IS NOT NULL",
     "SEARCH service USING COVERING INDEX service_virtual (virtual_antenna>?)"},
    {"SELECT count(*) FROM (SELECT DISTINCT antenna, frequency FROM service WHERE frequency IS NOT NULL)",
     "CO-ROUTINE (subquery-1), SCAN service, USE TEMP B-TREE FOR DISTINCT, SCAN (subquery-1)"},
    {"SELECT count(*) FROM programme", "SCAN programme"},
};

std::string Plan(sim::Database& database, const std::string& text) {
    sim::Statement statement;
    EXPECT_TRUE(statement.Prepare(database, "EXPLAIN QUERY PLAN " + text)) << text;
    std::string plan;
    while (statement.Next() == sim::Statement::Step::Row)
        plan += (plan.empty() ? "" : ", ") + std::string(statement.Text(3));
    return plan;
}

TEST(QueryPlans, OfEachStatementIsTheBestOne) {
    LineUpTv tv;
    std::set<std::string> texts;
    sqlite3_trace_v2(
        tv.database.Get(), SQLITE_TRACE_STMT,
        [](unsigned, void* traced, void* statement, void*) {
            static_cast<std::set<std::string>*>(traced)->insert(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)));
            return 0;
        },
        &texts);
    EXPECT_EQ(tv.Load("transponder air 1000\nservice 0x1 1 \"One\"\nprogramme 00:00 60 \"A\""), "");
    EXPECT_EQ(tv.context.Reset(), "");
    sqlite3_trace_v2(tv.database.Get(), 0, nullptr, nullptr);
    // What is prepared but has not been run.
    for (sqlite3_stmt* next = nullptr; (next = sqlite3_next_stmt(tv.database.Get(), next)) != nullptr;)
        texts.insert(sqlite3_sql(next));
    for (const std::string& text : texts) {
        const std::string word = text.substr(0, text.find(' '));
        if (word == "BEGIN" || word == "COMMIT" || word == "ROLLBACK")
            continue;
        std::istringstream statements(text);
        for (std::string statement; std::getline(statements, statement, ';');) {
            statement.erase(0, statement.find_first_not_of(' '));
            const auto plan = kPlans.find(statement);
            ASSERT_NE(plan, kPlans.end()) << "a statement without a plan here: " << statement;
            EXPECT_EQ(Plan(tv.database, statement), plan->second) << statement;
        }
    }
}

} // namespace
