#pragma once

#include <map>
#include <string>
#include <vector>

#include "Table.h"

namespace walk {

// Counts how often each row of each table was visited.
class Coverage {
public:
    // All rows that can be reached from the given tables.
    explicit Coverage(const std::vector<TableOf>& roots);

    void visit(const Row& row);
    // How little the row is worth to be chosen: it counts how often the least visited of the rows
    // that it leads to was visited, and the more the fewer they are how often the row was chosen
    // without coming there.
    long score(const Row& row) const;
    // Rows that were never visited, each as "table: row".
    std::vector<std::string> unvisited() const;
    std::size_t rows() const { return m_rows.size(); }

    // One line a row, "visits table: row"; and the counts of such lines added to these.
    std::string text() const;
    void add(const std::string& text);

private:
    struct Counted {
        std::string name;
        long visits = 0;
        // The row itself and all below.
        std::vector<std::size_t> below;
    };
    std::vector<std::size_t> collect(const Table& table);
    std::vector<std::size_t> collect(const Acts& acts, const std::string& place);

    std::vector<Counted> m_rows;
    std::map<const Row*, std::size_t> m_numbers;
    std::map<const Table*, std::vector<std::size_t>> m_tables;
};

} // namespace walk
