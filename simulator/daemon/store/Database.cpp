#include "Database.h"

namespace sim {

bool Statement::Prepare(Database& database, std::string_view text) {
    sqlite3_finalize(m_statement);
    m_statement = nullptr;
    return sqlite3_prepare_v3(database.Get(), text.data(), static_cast<int>(text.size()), SQLITE_PREPARE_PERSISTENT,
                              &m_statement, nullptr) == SQLITE_OK;
}

void Statement::Bind(int place, std::string_view text) {
    Note(sqlite3_bind_text64(m_statement, place, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8) == SQLITE_OK);
}

Statement::Step Statement::Next() {
    if (m_hasFailed)
        return Step::Failed;
    switch (sqlite3_step(m_statement)) {
    case SQLITE_ROW:
        return Step::Row;
    case SQLITE_DONE:
        return Step::Done;
    default:
        m_hasFailed = true;
        return Step::Failed;
    }
}

std::string_view Statement::Text(int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    Note(text != nullptr);
    if (text == nullptr)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
}

// SQLite converts; the size is that of its last conversion.
std::u16string_view Statement::Text16(int column) {
    const auto* units = static_cast<const char16_t*>(sqlite3_column_text16(m_statement, column));
    Note(units != nullptr);
    if (units == nullptr)
        return {};
    return {units, static_cast<std::size_t>(sqlite3_column_bytes16(m_statement, column)) / sizeof(char16_t)};
}

bool Statement::Run() {
    const bool done = Next() == Step::Done;
    Reset();
    return done;
}

void Statement::Reset() {
    sqlite3_reset(m_statement);
    m_hasFailed = false;
}

Database::~Database() {
    sqlite3_close_v2(m_database);
}

bool Database::Open(const std::string& path) {
    const std::string name = path.empty() ? ":memory:" : path;
    if (sqlite3_open_v2(name.c_str(), &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK)
        return false;
    sqlite3_extended_result_codes(m_database, 1);
    if (path.empty())
        return true;
    // One TV, one database: a second daemon on the file is refused here.
    return Execute("PRAGMA locking_mode = EXCLUSIVE;"
                   "PRAGMA journal_mode = WAL;"
                   "PRAGMA synchronous = FULL;"
                   "BEGIN IMMEDIATE; COMMIT;");
}

bool Database::Execute(const char* text) {
    return sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string Database::GetError() const {
    return m_database == nullptr ? "out of memory" : sqlite3_errmsg(m_database);
}

Transaction::Transaction(Database& database) : m_database(database), m_open(database.Execute("BEGIN IMMEDIATE")) {}

Transaction::~Transaction() {
    if (m_open)
        m_database.Execute("ROLLBACK");
}

bool Transaction::Commit() {
    if (!m_open || !m_database.Execute("COMMIT"))
        return false;
    m_open = false;
    return true;
}

} // namespace sim
