#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <sqlite3.h>
#include <sys/stat.h>

namespace sim {

class Database;

// A prepared statement. Values are bound, never part of the text.
class Statement {
public:
    Statement() = default;
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // False, with the database's error set, if the text is rejected. Prepare again to reuse.
    bool Prepare(Database& database, std::string_view text);

    // Places count from 1. Texts must outlive the run. If a value cannot be bound, the run fails.
    void Bind(int place, std::int64_t value) { Note(sqlite3_bind_int64(m_statement, place, value) == SQLITE_OK); }
    // SQLite's integers are signed; all 64 bits are preserved.
    void Bind(int place, std::uint64_t value) { Bind(place, static_cast<std::int64_t>(value)); }
    void Bind(int place, std::string_view text);
    void BindNull(int place) { Note(sqlite3_bind_null(m_statement, place) == SQLITE_OK); }

    enum class Step { Row, Done, Failed };
    Step Next();
    // Columns of the row, counted from 0.
    std::int64_t Int(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::uint64_t Number64(int column) const { return static_cast<std::uint64_t>(Int(column)); }
    bool IsNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    // Both valid until the next step, which fails if there was no memory for the text.
    std::string_view Text(int column);
    std::u16string_view Text16(int column);
    bool HasFailed() const { return m_hasFailed; }

    // Runs a statement without rows, and resets it.
    bool Run();
    void Reset();

private:
    void Note(bool good) { m_hasFailed = m_hasFailed || !good; }

    sqlite3_stmt* m_statement = nullptr;
    bool m_hasFailed = false; // since the last reset
};

// The TV's database: in memory, or a file in which each change is committed at once.
class Database {
public:
    Database() = default;
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // An empty path: in memory. A new file is this user's only. False if it is not a database of this program and this
    // version of it, is in use by another process, or cannot be written.
    bool Open(const std::string& path);
    // Statements without rows, several at once.
    bool Execute(const char* text);
    std::string GetError() const;
    // Called after each statement of an open database with its text and duration; null: no longer.
    using Trace = std::function<void(const char* text, std::int64_t nanoseconds)>;
    void SetTrace(Trace trace);
    sqlite3* Get() const { return m_database; }

private:
    bool PrepareFile(bool& isNew);
    // Once the file is no longer at its path, nothing is committed: it would be lost.
    bool NoteWhetherLost();

    sqlite3* m_database = nullptr;
    std::string m_path;
    struct stat m_file {};
    bool m_isLost = false;
    std::string m_error; // of this class; else SQLite's
    Trace m_trace;
};

// Several changes that are committed together, or not at all without Commit. If it is not open,
// changes are committed individually and at once: check first.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    bool IsOpen() const { return m_open; }
    bool Commit();

private:
    Database& m_database;
    bool m_open;
};

} // namespace sim
