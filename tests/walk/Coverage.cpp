#include "Coverage.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace walk {

Coverage::Coverage(const std::vector<TableOf>& roots) {
    for (const TableOf root : roots)
        collect(root());
}

std::vector<std::size_t> Coverage::collect(const Table& table) {
    const auto known = m_tables.find(&table);
    if (known != m_tables.end())
        return known->second;
    return m_tables[&table] = collect(table.acts, table.name);
}

std::vector<std::size_t> Coverage::collect(const Acts& acts, const std::string& place) {
    std::vector<std::size_t> all;
    const auto append = [&](const std::vector<std::size_t>& more) {
        all.insert(all.end(), more.begin(), more.end());
    };
    for (const Act& act : acts) {
        append(collect(act.acts, place));
        if (act.table)
            append(collect(act.table()));
        for (const Row& row : act.rows) {
            const std::size_t number = m_rows.size();
            m_rows.push_back({place + ": " + row.name, 0, {}});
            m_numbers[&row] = number;
            std::vector<std::size_t> below = collect(row.acts, place + ": " + row.name);
            below.push_back(number);
            append(below);
            m_rows[number].below = std::move(below);
        }
    }
    return all;
}

void Coverage::visit(const Row& row) {
    ++m_rows[m_numbers.at(&row)].visits;
}

long Coverage::score(const Row& row) const {
    const Counted& counted = m_rows[m_numbers.at(&row)];
    long least = std::numeric_limits<long>::max();
    for (const std::size_t number : counted.below)
        least = std::min(least, m_rows[number].visits);
    return least + counted.visits / (2 * static_cast<long>(counted.below.size()));
}

std::vector<std::string> Coverage::unvisited() const {
    std::vector<std::string> names;
    for (const Counted& row : m_rows) {
        if (row.visits == 0)
            names.push_back(row.name);
    }
    return names;
}

std::string Coverage::text() const {
    std::string lines;
    for (const Counted& row : m_rows)
        lines += std::to_string(row.visits) + " " + row.name + "\n";
    return lines;
}

void Coverage::add(const std::string& text) {
    std::istringstream lines(text);
    for (Counted& row : m_rows) {
        long visits = 0;
        std::string name;
        if (!(lines >> visits) || !std::getline(lines >> std::ws, name) || name != row.name)
            return;
        row.visits += visits;
    }
}

} // namespace walk
