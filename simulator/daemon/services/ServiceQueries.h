#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <base/Log.h>
#include <values/Values.h>

#include "Database.h"
#include "ReplyWriter.h"

namespace sim {

using values::Condition;
using values::Criteria;

// Clients' queries of the line-up's services. A query is one prepared statement with bound values;
// queries that only differ in values share it.
class ServiceQueries {
public:
    ServiceQueries(Database& database, Log& log) : m_database(database), m_log(log) {}

    // Both write the operation's status at place 0 and the result at place 2. A refusal is logged,
    // without a result.

    // The first `count` services that meet the criteria, in the line-up's order. The status is
    // their number, the record is the first one's.
    void Find(const Criteria& criteria, std::int32_t count, ReplyWriter& out);

    struct Page {
        std::int32_t antenna;
        std::int32_t profile;
        std::int32_t first; // number of skipped services
        std::int32_t count; // 0: all
    };
    // The records of an antenna's services of a profile that meet the criteria, in the line-up's
    // order.
    void List(const Criteria& criteria, const Page& page, ReplyWriter& out);

    // The SELECT for criteria with known fields: values by place, followed by a limit.
    static std::string ToFindText(const Criteria& criteria);
    static std::string ToListText(const Criteria& criteria);

    std::size_t GetStatementCount() const { return m_statements.size(); }

private:
    enum class Kind : char { Find, List };

    // Null: refused, with the result in `result` and a log line.
    Statement* Prepare(Kind kind, const Criteria& criteria, std::int32_t& result);
    std::int32_t WriteFirst(const Criteria& criteria, std::int32_t count, wire::TreeWriter& tree);
    std::int32_t WriteAll(const Criteria& criteria, const Page& page, wire::TreeWriter& tree);
    static void WriteRecord(const Criteria& criteria, const Statement& row, wire::TreeWriter& tree, std::int16_t place);
    std::int32_t Refuse(const char* operation);

    Database& m_database;
    Log& m_log;
    std::map<std::string, Statement, std::less<>> m_statements; // by query text without values
    std::string m_shape;                                        // of the current query; keeps its memory
};

} // namespace sim
