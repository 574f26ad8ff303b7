#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <values/Values.h>

#include "Database.h"
#include "ReplyWriter.h"
#include <base/Log.h>

namespace sim {

using values::Condition;
using values::Criteria;

// Queries that clients have built, against the line-up's services. A query is one prepared
// statement with its values bound; queries that differ in values only share it.
class ServiceQueries {
public:
    ServiceQueries(Database& database, Log& log) : m_database(database), m_log(log) {}

    // Both write the operation's status, as place 0, and what was found at place 2: a refusal is in
    // the log, and nothing stands at place 2 then.

    // The first `count` services that meet the criteria, in the line-up's order. The status is how
    // many there are, the record is the first one's.
    void Find(const Criteria& criteria, std::int32_t count, ReplyWriter& out);

    struct Page {
        std::int32_t antenna;
        std::int32_t profile;
        std::int32_t first; // so many are left out
        std::int32_t count; // 0: all
    };
    // Of an antenna's services of a profile: the records of those that meet the criteria, in the
    // line-up's order.
    void List(const Criteria& criteria, const Page& page, ReplyWriter& out);

    // The SELECT for criteria whose fields are known: values by their places, a limit behind them.
    static std::string ToFindText(const Criteria& criteria);
    static std::string ToListText(const Criteria& criteria);

    std::size_t GetStatementCount() const { return m_statements.size(); }

private:
    enum class Kind : char { Find, List };

    // Null: refused, with the reason in `result` and a log line.
    Statement* Prepare(Kind kind, const Criteria& criteria, std::int32_t& result);
    std::int32_t WriteFirst(const Criteria& criteria, std::int32_t count, wire::TreeWriter& tree);
    std::int32_t WriteAll(const Criteria& criteria, const Page& page, wire::TreeWriter& tree);
    static void WriteRecord(const Criteria& criteria, const Statement& row, wire::TreeWriter& tree,
                            std::int16_t place);
    std::int32_t Refuse(const char* operation);

    Database& m_database;
    Log& m_log;
    std::map<std::string, Statement, std::less<>> m_statements; // by their queries' shape
    std::string m_shape; // of the query at hand; keeps its memory
};

} // namespace sim
