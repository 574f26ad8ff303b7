// A service looked up by its major number among a million and among a thousand: FindService with
// its query built each time, beside what a small call and SQLite's own look-up take, and beside the
// same look-up over GDBus from a process that holds the same database.

#include "Figure.h"
#include "GDBusPeer.h"
#include "LineUp.h"
#include "RoundProcess.h"
#include "Rounds.h"
#include "SimulatedTv.h"

#include <algorithm>
#include <random>

#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceNavigation.h>

namespace {

constexpr int kMany = 1000000;
constexpr int kFew = 1000;
constexpr int kLookups = 4000;
constexpr int kRounds = 15;

// Majors in no order, the same ones in every process.
class TCMajors {
public:
    explicit TCMajors(int services) : m_Any(0, std::min(services, bench::kMajors) - 1) {}
    int Next() { return m_Any(m_Source); }

private:
    std::mt19937 m_Source;
    std::uniform_int_distribution<int> m_Any;
};

void Lookup(IService& service, int major) {
    TCCriteriaHelper query;
    TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_BY_MAJOR, query,
                                                  NAVIGATION_SORT_DEFAULT);
    query.Where(SERVICE_FIELD_MAJOR, major);
    query.Fetch(SERVICE_FIELD_ID);
    TCServiceData record;
    if (service.FindService(query, record, 1) != 1 ||
        record.GetFieldTable()->Find(SERVICE_FIELD_ID) == nullptr)
        bench::GiveUp("a service was not found");
}

enum ERound : std::size_t { kFindService, kSmallCall };

// Both rounds against the TV of the process in which they run.
std::vector<std::function<double()>> RoundsAmong(int services) {
    const auto find = [majors = TCMajors(services)]() mutable {
        static IService* const service = [] {
            IService* created = nullptr;
            if (NorvexAPI::CreateService(&created) != 0)
                bench::GiveUp("the TV gives no services");
            return created;
        }();
        return bench::NanosecondsEach(kLookups, [&] { Lookup(*service, majors.Next()); });
    };
    const auto call = [] {
        static IServiceNavigation* const navigation = [] {
            IServiceNavigation* created = nullptr;
            if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0)
                bench::GiveUp("the TV gives no navigation");
            return created;
        }();
        TSTvMode mode;
        return bench::NanosecondsEach(kLookups, [&] { navigation->GetTvMode(mode); });
    };
    return {find, call};
}

} // namespace

int main() {
    const bench::TCLineUp few(kFew);
    const bench::TCSimulatedTv fewTv({"--lineup", few.Path()});
    bench::TCRoundProcess amongFew(RoundsAmong(kFew));
    const bench::TCLineUp many(kMany);
    const bench::TCSimulatedTv manyTv({"--lineup", many.Path()});
    bench::TCRoundProcess amongMany(RoundsAmong(kMany));

    bench::TCLineUpDatabase database(many);
    // The far side holds this very database: in memory, nothing of it is shared but the fork.
    bench::TSAnswers answers;
    answers.m_Answer = [&database](const std::string& major) {
        return std::to_string(database.FindByMajor(std::stoi(major)));
    };
    bench::TCGDBusPeer gdBus(answers);
    gdBus.Connect();

    TCMajors ownMajors(kMany);
    TCMajors peerMajors(kMany);
    std::string service;
    const std::vector<double> medians = bench::MedianOfRounds(
        {{"FindService among many", [&] { return amongMany.Run(kFindService); }},
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

    bench::TSFigure lookup;
    lookup.m_Name = "lookup_by_major";
    lookup.m_Unit = "ns";
    lookup.m_Value = medians[0];
    lookup.m_Peers = {{"small call", medians[2]},
                      {"SQLite's prepared look-up", medians[3]},
                      {"GDBus peer to peer with the same look-up", medians[4]}};
    lookup.m_Ratio = medians[0] / (medians[2] + medians[3]);
    lookup.m_Limit = 1.5;

    bench::TSFigure growth;
    growth.m_Name = "lookup_among_1000000";
    growth.m_Unit = "ns";
    growth.m_Value = medians[0];
    growth.m_Peers = {{"among 1,000", medians[1]}};
    growth.m_Ratio = medians[0] / medians[1];
    growth.m_Limit = 1.3;
    return bench::PrintFigures({lookup, growth}) ? 0 : 1;
}
