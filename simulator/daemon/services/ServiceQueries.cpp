#include "ServiceQueries.h"

#include <cstring>

#include <values/ServiceFields.h>
#include <wire/Message.h>

#include "Results.h"

namespace sim {

namespace {

// SQLite's expressions can be a thousand levels deep; each condition is one level.
constexpr std::size_t kMaxConditions = 500;
constexpr std::size_t kMaxFetched = 500;
// Maximum of prepared statements kept. Consoles use a handful.
constexpr std::size_t kMaxStatements = 64;

const char kOrder[] = " ORDER BY antenna, major, minor, id LIMIT ?";

// Index of the record or the list among the operation's arguments.
constexpr std::int16_t kResultPlace = 2;

// The status comes first, but is known last.
template <class F> void WriteWithStatus(ReplyWriter& out, F&& write) {
    wire::Buffer& reply = out.Tree().GetBuffer();
    const std::size_t begin = reply.GetSize();
    out.Int(0, 0);
    const std::int32_t status = write();
    if (status <= 0)
        reply.Truncate(begin + wire::kNodeHeaderSize + sizeof status);
    std::memcpy(reply.GetData() + begin + wire::kNodeHeaderSize, &status, sizeof status);
}

void AppendNumber(std::string& shape, std::int32_t number) {
    shape.append(reinterpret_cast<const char*>(&number), sizeof number);
}

std::string ToSelect(const Criteria& criteria) {
    std::string text = "SELECT ";
    const char* between = "";
    for (const std::int32_t field : criteria.fetched) {
        text += between;
        text += values::FindServiceField(field)->name;
        between = ", ";
    }
    // Nothing fetched: a record without fields.
    return text + (criteria.fetched.empty() ? "NULL" : "") + " FROM service";
}

// A service without the field equals nothing and differs from everything. Values are bound from
// `place` on.
std::string ToConditions(const Criteria& criteria, std::size_t place, const char* between) {
    std::string text;
    for (const Condition& condition : criteria.conditions) {
        text += between;
        text += values::FindServiceField(condition.field)->name;
        text += (condition.comparison == values::Comparison::Equal ? " = ?" : " IS NOT ?") + std::to_string(place++);
        between = " AND ";
    }
    return text;
}

} // namespace

std::string ServiceQueries::ToFindText(const Criteria& criteria) {
    return ToSelect(criteria) + ToConditions(criteria, 1, " WHERE ") + kOrder +
           std::to_string(criteria.conditions.size() + 1);
}

std::string ServiceQueries::ToListText(const Criteria& criteria) {
    const std::size_t next = criteria.conditions.size() + 3;
    // The table's key is the antenna followed by the line-up's order. The plus keeps SQLite from
    // using an index on the profile instead.
    return ToSelect(criteria) + " WHERE antenna = ?1 AND +profile = ?2" + ToConditions(criteria, 3, " AND ") + kOrder +
           std::to_string(next) + " OFFSET ?" + std::to_string(next + 1);
}

Statement* ServiceQueries::Prepare(Kind kind, const Criteria& criteria, std::int32_t& result) {
    m_shape.assign(1, static_cast<char>(kind));
    AppendNumber(m_shape, static_cast<std::int32_t>(criteria.conditions.size()));
    for (const Condition& condition : criteria.conditions) {
        AppendNumber(m_shape, static_cast<std::int32_t>(condition.comparison));
        AppendNumber(m_shape, condition.field);
    }
    for (const std::int32_t field : criteria.fetched)
        AppendNumber(m_shape, field);
    const auto known = m_statements.find(m_shape);
    if (known != m_statements.end())
        return &known->second;

    if (criteria.conditions.size() > kMaxConditions || criteria.fetched.size() > kMaxFetched) {
        m_log.Write(kTunerTag, "query refused: %zu conditions, %zu fields", criteria.conditions.size(),
                    criteria.fetched.size());
        result = kTooMany;
        return nullptr;
    }
    const auto isKnown = [&](std::int32_t field) {
        if (values::FindServiceField(field) != nullptr)
            return true;
        m_log.Write(kTunerTag, "query refused: unknown field %d", field);
        return false;
    };
    result = kBadArgument;
    for (const Condition& condition : criteria.conditions) {
        if (!isKnown(condition.field))
            return nullptr;
    }
    for (const std::int32_t field : criteria.fetched) {
        if (!isKnown(field))
            return nullptr;
    }
    if (m_statements.size() >= kMaxStatements)
        m_statements.clear();
    Statement& statement = m_statements[m_shape];
    if (!statement.Prepare(m_database, kind == Kind::Find ? ToFindText(criteria) : ToListText(criteria))) {
        m_statements.erase(m_shape);
        result = Refuse("query");
        return nullptr;
    }
    return &statement;
}

std::int32_t ServiceQueries::Refuse(const char* operation) {
    return m_log.Refuse(kNotKept, kTunerTag, "%s refused: %s", operation, m_database.GetError().c_str());
}

void ServiceQueries::WriteRecord(const Criteria& criteria, const Statement& row, wire::TreeWriter& tree,
                                 std::int16_t place) {
    const std::size_t branch = tree.BeginBranch(place);
    int column = 0;
    for (const std::int32_t number : criteria.fetched) {
        const auto tag = static_cast<std::int16_t>(number);
        const std::int64_t value = row.Int(column);
        if (values::SizeOfServiceField(number) == sizeof value)
            tree.PutValue(tag, value);
        else if (value == 0 && row.IsNull(column))
            tree.PutLeaf(tag, wire::NodeKind::Value, nullptr, 0);
        else
            tree.PutValue(tag, static_cast<std::int32_t>(value));
        ++column;
    }
    tree.EndBranch(branch);
}

void ServiceQueries::Find(const Criteria& criteria, std::int32_t count, ReplyWriter& out) {
    WriteWithStatus(out, [&] { return WriteFirst(criteria, count, out.Tree()); });
}

void ServiceQueries::List(const Criteria& criteria, const Page& page, ReplyWriter& out) {
    WriteWithStatus(out, [&] { return WriteAll(criteria, page, out.Tree()); });
}

std::int32_t ServiceQueries::WriteFirst(const Criteria& criteria, std::int32_t count, wire::TreeWriter& tree) {
    if (count <= 0)
        return m_log.Refuse(kBadArgument, kTunerTag, "FindService refused: %d services requested", count);
    std::int32_t result = 0;
    Statement* statement = Prepare(Kind::Find, criteria, result);
    if (statement == nullptr)
        return result;
    int at = 1;
    for (const Condition& condition : criteria.conditions)
        statement->Bind(at++, std::int64_t{condition.value});
    statement->Bind(at, std::int64_t{count});
    std::int32_t found = 0;
    Statement::Step step = statement->Next();
    for (; step == Statement::Step::Row; step = found < count ? statement->Next() : Statement::Step::Done) {
        if (found++ == 0)
            WriteRecord(criteria, *statement, tree, kResultPlace);
    }
    if (step == Statement::Step::Failed)
        found = Refuse("FindService");
    statement->Reset();
    m_log.WriteDebug(Debug::ServiceList, "FindService: %zu conditions, up to %d: %d services",
                     criteria.conditions.size(), count, found);
    return found;
}

std::int32_t ServiceQueries::WriteAll(const Criteria& criteria, const Page& page, wire::TreeWriter& tree) {
    if (page.first < 0 || page.count < 0)
        return m_log.Refuse(kBadArgument, kTunerTag, "GetServiceList refused: invalid page of %d services after %d",
                            page.count, page.first);
    std::int32_t result = 0;
    Statement* statement = Prepare(Kind::List, criteria, result);
    if (statement == nullptr)
        return result;
    int at = 1;
    statement->Bind(at++, std::int64_t{page.antenna});
    statement->Bind(at++, std::int64_t{page.profile});
    for (const Condition& condition : criteria.conditions)
        statement->Bind(at++, std::int64_t{condition.value});
    statement->Bind(at++, std::int64_t{page.count == 0 ? -1 : page.count});
    statement->Bind(at, std::int64_t{page.first});

    result = kDone;
    const std::size_t list = tree.BeginBranch(kResultPlace);
    std::size_t found = 0;
    std::int16_t number = 0;
    Statement::Step step = statement->Next();
    for (; step == Statement::Step::Row && result == kDone; step = statement->Next()) {
        // Tags restart after 16 bits: records are identified by their order.
        WriteRecord(criteria, *statement, tree, number);
        ++found;
        number = number == INT16_MAX ? std::int16_t{0} : static_cast<std::int16_t>(number + 1);
        if (tree.GetBuffer().GetSize() > wire::kMaxTreeSize) {
            m_log.Write(kTunerTag, "GetServiceList refused: the list is too long for one reply");
            result = kTooMany;
        }
    }
    if (step == Statement::Step::Failed)
        result = Refuse("GetServiceList");
    statement->Reset();
    tree.EndBranch(list);
    m_log.WriteDebug(Debug::ServiceList, "GetServiceList: antenna %d, profile %d, %zu conditions: %zu services",
                     page.antenna, page.profile, criteria.conditions.size(), found);
    return result;
}

} // namespace sim
