// The console's list of all services of a TV mode, of a hundred thousand and of a million, compared
// with SQLite's scan of the same query into a vector, and the growth of both processes.

#include <fstream>
#include <list>
#include <utility>

#include <malloc.h>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

#include "Figure.h"
#include "LineUp.h"
#include "RoundProcess.h"
#include "Rounds.h"
#include "ServiceRecord.h"
#include "SimulatedTv.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr int kMany = 1000000;
constexpr int kFew = 100000;
constexpr int kRounds = 7;

IServiceNavigation& Navigation() {
    static IServiceNavigation* const navigation = [] {
        IServiceNavigation* created = nullptr;
        if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0)
            bench::GiveUp("the navigation could not be created");
        return created;
    }();
    return *navigation;
}

void List(std::size_t expected) {
    std::list<std::pair<std::uint64_t, std::uint32_t>> services;
    if (!TCDebugMenuTPMS().m_GetServiceList(services, &Navigation()) || services.size() != expected)
        bench::GiveUp("the list does not have all services");
}

double BytesInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

enum Round : std::size_t { kList, kHeap, kFillJournal };

// With the TV of their process: nanoseconds of a list per service, and growth of the heap after a
// list.
std::vector<std::function<double()>> RoundsOf(int services) {
    const auto list = [services] {
        return bench::NanosecondsEach(1, [&] { List(static_cast<std::size_t>(services)); }) / services;
    };
    const auto heap = [services] {
        const double before = BytesInUse();
        List(static_cast<std::size_t>(services));
        const double after = BytesInUse();
        // Once this is answered, the daemon has freed the list.
        TSTvMode mode;
        Navigation().GetTvMode(mode);
        return after - before;
    };
    // The daemon's journal keeps the beginnings of the last replies, 16 KiB of each and 8 MiB in
    // total.
    const auto fillJournal = [] {
        TCCriteriaHelper query;
        query.Fetch(SERVICE_FIELD_ID);
        return bench::NanosecondsEach(600, [&] {
            TSServiceRecords records;
            if (Navigation().GetServiceList(query, records.m_list, TSTvMode(), 0, 1000) <= 0)
                bench::GiveUp("the journal could not be filled");
        });
    };
    return {list, heap, fillJournal};
}

// A line of a /proc file of the process.
double BytesOf(pid_t process, const std::string& name, const std::string& line) {
    std::ifstream status("/proc/" + std::to_string(process) + "/" + name);
    double kibibytes = 0;
    for (std::string word; status >> word;) {
        if (word == line)
            status >> kibibytes;
    }
    return kibibytes * 1024;
}

// Resets the process's peak to its current use.
void ForgetPeak(pid_t process) {
    std::ofstream file("/proc/" + std::to_string(process) + "/clear_refs");
    if (!(file << '5' << std::flush))
        bench::GiveUp("the daemon's peak cannot be reset");
}

bench::Figure TimeFigure(const char* name, double value, double own) {
    bench::Figure figure;
    figure.name = name;
    figure.unit = "ns/service";
    figure.value = value;
    figure.peers = {{"SQLite's scan into a vector", own}};
    figure.ratio = value / own;
    figure.limit = 4;
    return figure;
}

} // namespace

int main() {
    const bench::LineUp few(kFew);
    const bench::SimulatedTv fewTv({"--lineup", few.GetPath()});
    bench::RoundProcess fewLists(RoundsOf(kFew));
    const bench::LineUp many(kMany);
    const bench::SimulatedTv manyTv({"--lineup", many.GetPath()});
    bench::RoundProcess manyLists(RoundsOf(kMany));
    const double loaded = BytesOf(manyTv.GetProcess(), "status", "VmRSS:");
    ForgetPeak(manyTv.GetProcess());

    bench::LineUpDatabase fewOwn(few);
    bench::LineUpDatabase manyOwn(many);
    const auto scan = [](bench::LineUpDatabase& database, int services) {
        return bench::NanosecondsEach(1,
                                      [&] {
                                          if (database.List().size() != static_cast<std::size_t>(services))
                                              bench::GiveUp("SQLite did not list all services");
                                      }) /
               services;
    };
    const std::vector<double> medians = bench::MedianOfRounds({{"list of few", [&] { return fewLists.Run(kList); }},
                                                               {"list of many", [&] { return manyLists.Run(kList); }},
                                                               {"scan of few", [&] { return scan(fewOwn, kFew); }},
                                                               {"scan of many", [&] { return scan(manyOwn, kMany); }}},
                                                              kRounds);

    // After all those lists. `status` would count this only roughly.
    manyLists.Run(kFillJournal);
    const double kept = BytesOf(manyTv.GetProcess(), "smaps_rollup", "Anonymous:");
    manyLists.Run(kHeap); // leaves the console's buffer as a list does
    const double heap = manyLists.Run(kHeap);
    const double keptAgain = BytesOf(manyTv.GetProcess(), "smaps_rollup", "Anonymous:");
    const double peak = BytesOf(manyTv.GetProcess(), "status", "VmHWM:");

    bench::Figure growth;
    growth.name = "service_list_of_1000000_to_100000";
    growth.unit = "ns/service";
    growth.value = medians[1];
    growth.peers = {{"of 100,000", medians[0]}};
    growth.ratio = medians[1] / medians[0];
    growth.limit = 1.3;

    bench::Figure clientHeap;
    clientHeap.name = "service_list_console_heap";
    clientHeap.unit = "bytes";
    clientHeap.value = heap;
    clientHeap.ratio = heap;
    clientHeap.limit = 0;

    bench::Figure daemonMemory;
    daemonMemory.name = "service_list_daemon_memory";
    daemonMemory.unit = "bytes";
    daemonMemory.value = keptAgain - kept;
    daemonMemory.ratio = daemonMemory.value;
    daemonMemory.limit = 0;

    // What the lists add to the loaded line-up; the longest reply has 64 MiB.
    bench::Figure daemonPeak;
    daemonPeak.name = "service_list_daemon_peak";
    daemonPeak.unit = "bytes";
    daemonPeak.value = peak - loaded;
    daemonPeak.peers = {{"with the line-up loaded", loaded}, {"longest reply", 64 << 20}};
    daemonPeak.ratio = daemonPeak.value / (64 << 20);
    daemonPeak.limit = 1.5;

    return bench::PrintFigures({TimeFigure("service_list_100000", medians[0], medians[2]),
                                TimeFigure("service_list_1000000", medians[1], medians[3]), growth, clientHeap,
                                daemonMemory, daemonPeak})
               ? 0
               : 1;
}
