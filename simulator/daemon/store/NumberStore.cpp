#include "NumberStore.h"

namespace sim {

bool NumberStore::Prepare() {
    return m_database.Execute("CREATE TABLE IF NOT EXISTS setting ("
                              " part TEXT NOT NULL, key TEXT NOT NULL, value INTEGER NOT NULL,"
                              " PRIMARY KEY (part, key)) WITHOUT ROWID") &&
           m_put.Prepare(m_database, "INSERT INTO setting (part, key, value) VALUES (?1, ?2, ?3)"
                                     " ON CONFLICT (part, key) DO UPDATE SET value = ?3") &&
           m_clear.Prepare(m_database, "DELETE FROM setting WHERE part = ?1") &&
           m_select.Prepare(m_database, "SELECT key, value FROM setting WHERE part = ?1 ORDER BY key");
}

bool NumberStore::Put(std::string_view part, std::string_view key, std::int64_t value) {
    m_put.Bind(1, part);
    m_put.Bind(2, key);
    m_put.Bind(3, value);
    return m_put.Run();
}

bool NumberStore::Clear(std::string_view part) {
    m_clear.Bind(1, part);
    return m_clear.Run();
}

} // namespace sim
