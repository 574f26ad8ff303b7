#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Database.h"

namespace sim {

// Numbers of components that outlive the daemon: in the database, by component and key.
class NumberStore {
public:
    explicit NumberStore(Database& database) : m_database(database) {}

    // Once, when the database is open. False: see the database's error.
    bool Prepare();

    // False, without a change, if the database fails.
    bool Put(std::string_view part, std::string_view key, std::int64_t value);
    // Removes all numbers of a component.
    bool Clear(std::string_view part);
    // Calls visit(key, value) for each number of the component. GetReadError reports what could not
    // be read.
    template <class F> void ForEach(std::string_view part, F&& visit) {
        m_select.Bind(1, part);
        while (m_select.Next() == Statement::Step::Row)
            visit(m_select.Text(0), m_select.Int(1));
        NoteReadError();
        m_select.Reset();
    }
    // Empty as long as everything could be read.
    const std::string& GetReadError() const { return m_readError; }
    Database& GetDatabase() { return m_database; }

private:
    void NoteReadError() {
        if (m_select.HasFailed() && m_readError.empty())
            m_readError = "stored numbers: " + m_database.GetError();
    }

    Database& m_database;
    Statement m_put;
    Statement m_clear;
    Statement m_select;
    std::string m_readError;
};

} // namespace sim
