#include "Database.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

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

namespace {

// In the header of a database file: whose it is, and the version of its tables. Both are written before the file has a
// write-ahead log, so that the header always has them.
constexpr std::uint32_t kApplicationId = 0x4E56544D;
constexpr std::uint32_t kVersion = 1;
constexpr char kMagic[] = "SQLite format 3";
constexpr std::size_t kVersionAt = 60;
constexpr std::size_t kApplicationIdAt = 68;
using Header = std::array<unsigned char, 100>;

std::uint32_t ReadNumber(const Header& header, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t byte = at; byte < at + sizeof number; ++byte)
        number = number << 8 | header.at(byte);
    return number;
}

// Empty, or why a file that is not empty cannot be used.
std::string CheckHeader(const Header& header) {
    if (std::memcmp(header.data(), kMagic, sizeof kMagic) != 0)
        return "file is not a database";
    if (ReadNumber(header, kApplicationIdAt) != kApplicationId)
        return "database of another program";
    const std::uint32_t version = ReadNumber(header, kVersionAt);
    if (version != kVersion)
        return "database of version " + std::to_string(version) + ", expected " + std::to_string(kVersion);
    return {};
}

} // namespace

Database::~Database() {
    // Another database may be at the path by now, and its journal beside it.
    if (m_isLost)
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_close_v2(m_database);
}

bool Database::Open(const std::string& path) {
    m_path = path;
    const std::string name = path.empty() ? ":memory:" : path;
    bool isNew = true;
    if (!path.empty() && !PrepareFile(isNew))
        return false;
    if (sqlite3_open_v2(name.c_str(), &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK)
        return false;
    sqlite3_extended_result_codes(m_database, 1);
    if (path.empty())
        return true;
    // One TV, one database: a second daemon on the file is refused here.
    const std::string mark = "PRAGMA application_id = " + std::to_string(kApplicationId) +
                             "; PRAGMA user_version = " + std::to_string(kVersion) + ";";
    if (!Execute(("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE;" + (isNew ? mark : "") +
                  "COMMIT;"
                  "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; BEGIN IMMEDIATE; COMMIT;")
                     .c_str()))
        return false;
    // A non-zero result undoes the commit.
    sqlite3_commit_hook(
        m_database, [](void* self) { return static_cast<int>(static_cast<Database*>(self)->NoteWhetherLost()); }, this);
    return true;
}

// Creates the file if there is none; SQLite would let everyone read it. False: `m_error` is why it cannot be used.
bool Database::PrepareFile(bool& isNew) {
    // Opening a FIFO would wait for its other end.
    const int file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600);
    if (file < 0) {
        m_error = std::generic_category().message(errno);
        return false;
    }
    Header header{};
    const ssize_t size = pread(file, header.data(), header.size(), 0);
    isNew = size == 0;
    if (fstat(file, &m_file) != 0 || !S_ISREG(m_file.st_mode))
        m_error = "expected a regular file";
    else if (!isNew)
        m_error = CheckHeader(header);
    close(file);
    return m_error.empty();
}

bool Database::NoteWhetherLost() {
    struct stat named {};
    m_isLost =
        m_isLost || stat(m_path.c_str(), &named) != 0 || named.st_ino != m_file.st_ino || named.st_dev != m_file.st_dev;
    if (m_isLost)
        m_error = m_path + " was deleted or replaced; nothing is stored until the TV is restarted";
    return m_isLost;
}

bool Database::Execute(const char* text) {
    return sqlite3_exec(m_database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string Database::GetError() const {
    if (!m_error.empty())
        return m_error;
    return m_database == nullptr ? "out of memory" : sqlite3_errmsg(m_database);
}

void Database::SetTrace(Trace trace) {
    if (m_database == nullptr)
        return;
    m_trace = std::move(trace);
    const auto call = [](unsigned, void* database, void* statement, void* nanoseconds) {
        static_cast<Database*>(database)->m_trace(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)),
                                                  *static_cast<sqlite3_int64*>(nanoseconds));
        return 0;
    };
    sqlite3_trace_v2(m_database, m_trace ? SQLITE_TRACE_PROFILE : 0, m_trace ? +call : nullptr, this);
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
