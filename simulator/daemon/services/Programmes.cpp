#include "Programmes.h"

#include <algorithm>

#include "ServiceRecord.h"

namespace sim {

namespace {

constexpr std::int64_t kHour = 3600;

} // namespace

bool Programmes::Prepare() {
    return m_last.Prepare(m_database, "SELECT start, duration, title FROM programme"
                                      " WHERE service = ?1 AND start <= ?2"
                                      " ORDER BY start DESC LIMIT 1") &&
           m_first.Prepare(m_database, "SELECT start FROM programme"
                                       " WHERE service = ?1 AND start > ?2"
                                       " ORDER BY start LIMIT 1") &&
           m_add.Prepare(m_database, "INSERT INTO programme (service, start, duration, title, found)"
                                     " SELECT ?1, ?2, ?3, name, 1 FROM service WHERE id = ?1");
}

void Programmes::Leave(Statement& statement) {
    m_hasFailed = m_hasFailed || statement.HasFailed();
    statement.Reset();
}

bool Programmes::FindRow(std::uint64_t service, std::int64_t second, std::int64_t& midnights) {
    m_hasFailed = false;
    m_last.Bind(1, service);
    m_last.Bind(2, second);
    midnights = 0;
    if (m_last.Next() == Statement::Step::Row) {
        if (second < m_last.Int(0) + m_last.Int(1))
            return true;
        Leave(m_last);
        return false;
    }
    // Before the day's first programme: the last one of the previous day may still be on.
    Leave(m_last);
    if (m_hasFailed)
        return false;
    m_last.Bind(2, std::int64_t{kSecondsOfDay});
    midnights = 1;
    if (m_last.Next() == Statement::Step::Row && second < m_last.Int(0) + m_last.Int(1) - kSecondsOfDay)
        return true;
    Leave(m_last);
    return false;
}

std::optional<values::Programme> Programmes::FindPresent(std::uint64_t service) {
    const std::int64_t now = m_clock.Now();
    const std::int64_t second = now % kSecondsOfDay;
    std::int64_t midnights = 0;
    if (!FindRow(service, second, midnights))
        return {};
    values::Programme programme;
    programme.start = now - second + m_last.Int(0) - midnights * kSecondsOfDay;
    programme.duration = static_cast<std::uint32_t>(m_last.Int(1));
    if (!m_last.IsNull(2))
        programme.title.emplace(m_last.Text16(2));
    Leave(m_last);
    if (m_hasFailed)
        return {};
    return programme;
}

bool Programmes::HasPresent(std::uint64_t service) {
    std::int64_t midnights = 0;
    const bool found = FindRow(service, m_clock.Now() % kSecondsOfDay, midnights);
    Leave(m_last);
    return found;
}

bool Programmes::Collect(std::uint64_t service) {
    if (HasPresent(service))
        return true;
    // Fits between the known programmes before and after; neither is on now.
    const std::int64_t second = m_clock.Now() % kSecondsOfDay;
    std::int64_t start = second - second % kHour;
    std::int64_t end = start + kHour;
    m_last.Bind(1, service);
    m_last.Bind(2, second);
    if (m_last.Next() == Statement::Step::Row)
        start = std::max(start, m_last.Int(0) + m_last.Int(1));
    Leave(m_last);
    m_last.Bind(2, std::int64_t{kSecondsOfDay});
    if (m_last.Next() == Statement::Step::Row)
        start = std::max(start, m_last.Int(0) + m_last.Int(1) - kSecondsOfDay);
    Leave(m_last);
    m_first.Bind(1, service);
    m_first.Bind(2, second);
    if (m_first.Next() == Statement::Step::Row)
        end = std::min(end, m_first.Int(0));
    Leave(m_first);
    if (m_hasFailed)
        return false;
    m_add.Bind(1, service);
    m_add.Bind(2, start);
    m_add.Bind(3, end - start);
    return m_add.Run();
}

bool Programmes::ForgetCollected() {
    return m_database.Execute("DELETE FROM programme WHERE found = 1");
}

} // namespace sim
