#include "LineUp.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <Database.h>
#include <LineUpTables.h>
#include <ServiceQueries.h>
#include <unistd.h>

#include <norvex/client/CriteriaHelper.h>

#include "Figure.h"

namespace bench {

namespace {

constexpr auto kEqual = values::Comparison::Equal;
constexpr auto kDifferent = values::Comparison::Different;

// Common to both queries.
sim::Criteria VisibleServices() {
    sim::Criteria criteria;
    criteria.conditions = {{kEqual, SERVICE_FIELD_LISTED, 1}, {kEqual, SERVICE_FIELD_HIDDEN, 0}};
    criteria.fetched = {SERVICE_FIELD_ID};
    return criteria;
}

sim::Criteria ByMajor() {
    sim::Criteria criteria = VisibleServices();
    criteria.conditions.push_back({kEqual, SERVICE_FIELD_MAJOR, 0});
    return criteria;
}

sim::Criteria Broadcast() {
    sim::Criteria criteria = VisibleServices();
    criteria.conditions.push_back({kDifferent, SERVICE_FIELD_CHANNEL_TYPE, CHANNEL_TYPE_VIRTUAL});
    return criteria;
}

} // namespace

LineUp::LineUp(int services, bool programmes)
    : m_services(services), m_path((std::filesystem::temp_directory_path() / "zarn-bench-lineup.XXXXXX").string()) {
    const int descriptor = mkstemp(m_path.data());
    if (descriptor < 0)
        GiveUp(std::strerror(errno));
    close(descriptor);
    std::ofstream file(m_path);
    file << "transponder air 474000\n";
    for (int i = 0; i < services; ++i) {
        file << "service 0x" << std::hex << i + 1 << std::dec << ' ' << i % kMajors << '-' << i / kMajors + 1
             << " \"Service " << i << "\"\n";
        if (programmes)
            file << "programme 00:00 1440 \"All day long\"\n";
    }
    file.close();
    if (!file)
        GiveUp("the line-up could not be written");
}

LineUp::~LineUp() {
    unlink(m_path.c_str());
}

struct LineUpDatabase::Queries {
    sim::Database database;
    sim::LineUpTables tables{database};
    sim::Statement findByMajor;
    sim::Statement list;
    sim::Statement findTitle;
};

LineUpDatabase::LineUpDatabase(const LineUp& lineUp) : m_queries(std::make_unique<Queries>()) {
    Queries& queries = *m_queries;
    std::ifstream file(lineUp.GetPath());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::string error;
    if (!queries.database.Open("") || !queries.tables.Prepare())
        GiveUp(queries.database.GetError().c_str());
    if (!queries.tables.Replace(text, lineUp.GetPath(), error))
        GiveUp(error.c_str());
    if (!queries.findByMajor.Prepare(queries.database, sim::ServiceQueries::ToFindText(ByMajor())) ||
        !queries.list.Prepare(queries.database, sim::ServiceQueries::ToListText(Broadcast())) ||
        !queries.findTitle.Prepare(queries.database, "SELECT start, duration, title FROM programme WHERE"
                                                     " service = ?1 AND start <= ?2 ORDER BY start DESC LIMIT 1"))
        GiveUp(queries.database.GetError().c_str());
}

LineUpDatabase::~LineUpDatabase() = default;

std::uint64_t LineUpDatabase::FindByMajor(int major) {
    sim::Statement& find = m_queries->findByMajor;
    const std::int64_t values[] = {1, 0, major, 1}; // listed, not hidden, the major, one row
    int place = 1;
    for (const std::int64_t value : values)
        find.Bind(place++, value);
    const std::uint64_t service = find.Next() == sim::Statement::Step::Row ? find.Number64(0) : 0;
    find.Reset();
    return service;
}

std::vector<std::uint64_t> LineUpDatabase::List() {
    sim::Statement& list = m_queries->list;
    // Air, profile 0, listed, not hidden, not streamed, all rows from the first.
    const std::int64_t values[] = {0, 0, 1, 0, CHANNEL_TYPE_VIRTUAL, -1, 0};
    int place = 1;
    for (const std::int64_t value : values)
        list.Bind(place++, value);
    std::vector<std::uint64_t> services;
    while (list.Next() == sim::Statement::Step::Row)
        services.push_back(list.Number64(0));
    list.Reset();
    return services;
}

int LineUpDatabase::FindTitleSize(std::uint64_t service, int second) {
    sim::Statement& find = m_queries->findTitle;
    find.Bind(1, service);
    find.Bind(2, std::int64_t{second});
    int size = 0;
    if (find.Next() == sim::Statement::Step::Row && find.Int(0) + find.Int(1) > second)
        size = static_cast<int>(find.Text16(2).size());
    find.Reset();
    return size;
}

} // namespace bench
