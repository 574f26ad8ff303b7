// A service looked up by its major number among a million and among a thousand: FindService with a
// new query each time, compared with a small call plus SQLite's look-up, and with the same look-up
// over GDBus from a process with the same database.

#include <algorithm>
#include <random>

#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceNavigation.h>

#include "Figure.h"
#include "GDBusPeer.h"
#include "LineUp.h"
#include "RoundProcess.h"
#include "Rounds.h"
#include "SimulatedTv.h"

namespace {

constexpr int kMany = 1000000;
constexpr int kFew = 1000;
constexpr int kLookups = 4000;
constexpr int kRounds = 15;

// Majors in random order, the same in every process.
class Majors {
public:
    explicit Majors(int services) : m_any(0, std::min(services, bench::kMajors) - 1) {}
    int Next() { return m_any(m_source); }

private:
    std::mt19937 m_source;
    std::uniform_int_distribution<int> m_any;
};

void Lookup(IService& service, int major) {
    TCCriteriaHelper query;
    TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_BY_MAJOR, query, NAVIGATION_SORT_DEFAULT);
    query.Where(SERVICE_FIELD_MAJOR, major);
    query.Fetch(SERVICE_FIELD_ID);
    TCServiceData record;
    if (service.FindService(query, record, 1) != 1 || record.GetFieldTable()->Find(SERVICE_FIELD_ID) == nullptr)
        bench::GiveUp("a service was not found");
}

enum Round : std::size_t { kFindService, kSmallCall };

// Both rounds against the TV of the process in which they run.
std::vector<std::function<double()>> RoundsAmong(int services) {
    const auto find = [majors = Majors(services)]() mutable {
        static IService* const service = [] {
            IService* created = nullptr;
            if (NorvexAPI::CreateService(&created) != 0)
                bench::GiveUp("the services could not be created");
            return created;
        }();
        return bench::NanosecondsEach(kLookups, [&] { Lookup(*service, majors.Next()); });
    };
    const auto call = [] {
        static IServiceNavigation* const navigation = [] {
            IServiceNavigation* created = nullptr;
            if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0)
                bench::GiveUp("the navigation could not be created");
            return created;
        }();
        TSTvMode mode;
        return bench::NanosecondsEach(kLookups, [&] { navigation->GetTvMode(mode); });
    };
    return {find, call};
}

} // namespace

int main() {
    const bench::LineUp few(kFew);
    const bench::SimulatedTv fewTv({"--lineup", few.GetPath()});
    bench::RoundProcess amongFew(RoundsAmong(kFew));
    const bench::LineUp many(kMany);
    const bench::SimulatedTv manyTv({"--lineup", many.GetPath()});
    bench::RoundProcess amongMany(RoundsAmong(kMany));

    bench::LineUpDatabase database(many);
    // The forked process has a copy of this database.
    bench::Answers answers;
    answers.answer = [&database](const std::string& major) {
        return std::to_string(database.FindByMajor(std::stoi(major)));
    };
    bench::GDBusPeer gdBus(answers);
    gdBus.Connect();

    Majors ownMajors(kMany);
    Majors peerMajors(kMany);
    std::string service;
    const std::vector<double> medians =
        bench::MedianOfRounds({{"FindService among many", [&] { return amongMany.Run(kFindService); }},
                               {"FindService among few", [&] { return amongFew.Run(kFindService); }},
                               {"small call", [&] { return amongMany.Run(kSmallCall); }},
                               {"SQLite",
                                [&] {
                                    return bench::NanosecondsEach(kLookups, [&] {
                                        if (database.FindByMajor(ownMajors.Next()) == 0)
                                            bench::GiveUp("SQLite did not find a service");
                                    });
                                }},
                               {"GDBus",
                                [&] {
                                    return bench::NanosecondsEach(
                                        kLookups, [&] { gdBus.Execute(std::to_string(peerMajors.Next()), service); });
                                }}},
                              kRounds);

    bench::Figure lookup;
    lookup.name = "lookup_by_major";
    lookup.unit = "ns";
    lookup.value = medians[0];
    lookup.peers = {{"small call", medians[2]},
                    {"SQLite's prepared look-up", medians[3]},
                    {"GDBus peer to peer with the same look-up", medians[4]}};
    lookup.ratio = medians[0] / (medians[2] + medians[3]);
    lookup.limit = 1.5;

    bench::Figure growth;
    growth.name = "lookup_among_1000000";
    growth.unit = "ns";
    growth.value = medians[0];
    growth.peers = {{"among 1,000", medians[1]}};
    growth.ratio = medians[0] / medians[1];
    growth.limit = 1.3;
    return bench::PrintFigures({lookup, growth}) ? 0 : 1;
}
