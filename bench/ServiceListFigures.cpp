// The console's list of all services of a TV mode, of a hundred thousand and of a million, beside
// SQLite's own scan of the same query into a vector, and what it leaves behind on both sides.

#include "Figure.h"
#include "LineUp.h"
#include "RoundProcess.h"
#include "Rounds.h"
#include "ServiceRecord.h"
#include "SimulatedTv.h"
#include "TPMSDebugMenu.h"

#include <fstream>
#include <list>
#include <utility>

#include <malloc.h>

#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceNavigation.h>

namespace {

constexpr int kMany = 1000000;
constexpr int kFew = 100000;
constexpr int kRounds = 7;

IServiceNavigation& Navigation() {
    static IServiceNavigation* const navigation = [] {
        IServiceNavigation* created = nullptr;
        if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0)
            bench::GiveUp("the TV gives no navigation");
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

enum ERound : std::size_t { kList, kHeap, kFillJournal };

// Against the TV of the process in which they run: nanoseconds of a list per service, and the bytes
// of the heap that are in use after a list and were not before.
std::vector<std::function<double()>> RoundsOf(int services) {
    const auto list = [services] {
        return bench::NanosecondsEach(1, [&] { List(static_cast<std::size_t>(services)); }) /
               services;
    };
    const auto heap = [services] {
        const double before = BytesInUse();
        List(static_cast<std::size_t>(services));
        const double after = BytesInUse();
        // Answered: the daemon is done with the list before.
        TSTvMode mode;
        Navigation().GetTvMode(mode);
        return after - before;
    };
    // The daemon keeps the beginnings of the last replies, 16 KiB of each and 8 MiB in all.
    const auto fillJournal = [] {
        TCCriteriaHelper query;
        query.Fetch(SERVICE_FIELD_ID);
        return bench::NanosecondsEach(600, [&] {
            TSServiceRecords records;
            if (Navigation().GetServiceList(query, records.m_list, TSTvMode(), 0, 1000) <= 0)
                bench::GiveUp("there are no lists to fill the journal with");
        });
    };
    return {list, heap, fillJournal};
}

// A line of a file of the kernel's about the process.
double BytesOf(pid_t process, const std::string& name, const std::string& line) {
    std::ifstream status("/proc/" + std::to_string(process) + "/" + name);
    double kibibytes = 0;
    for (std::string word; status >> word;) {
        if (word == line)
            status >> kibibytes;
    }
    return kibibytes * 1024;
}

// From here on the process's peak is what it has now.
void ForgetPeak(pid_t process) {
    std::ofstream file("/proc/" + std::to_string(process) + "/clear_refs");
    if (!(file << '5' << std::flush))
        bench::GiveUp("the daemon's peak cannot be set back");
}

bench::TSFigure TimeFigure(const char* name, double value, double own) {
    bench::TSFigure figure;
    figure.m_Name = name;
    figure.m_Unit = "ns/service";
    figure.m_Value = value;
    figure.m_Peers = {{"SQLite's scan into a vector", own}};
    figure.m_Ratio = value / own;
    figure.m_Limit = 4;
    return figure;
}

} // namespace

int main() {
    const bench::TCLineUp few(kFew);
    const bench::TCSimulatedTv fewTv({"--lineup", few.Path()});
    bench::TCRoundProcess fewLists(RoundsOf(kFew));
    const bench::TCLineUp many(kMany);
    const bench::TCSimulatedTv manyTv({"--lineup", many.Path()});
    bench::TCRoundProcess manyLists(RoundsOf(kMany));
    const double loaded = BytesOf(manyTv.Process(), "status", "VmRSS:");
    ForgetPeak(manyTv.Process());

    bench::TCLineUpDatabase fewOwn(few);
    bench::TCLineUpDatabase manyOwn(many);
    const auto scan = [](bench::TCLineUpDatabase& database, int services) {
        return bench::NanosecondsEach(1,
                                      [&] {
                                          if (database.List().size() !=
                                              static_cast<std::size_t>(services))
                                              bench::GiveUp("SQLite did not list all services");
                                      }) /
               services;
    };
    const std::vector<double> medians =
        bench::MedianOfRounds({{"list of few", [&] { return fewLists.Run(kList); }},
                               {"list of many", [&] { return manyLists.Run(kList); }},
                               {"scan of few", [&] { return scan(fewOwn, kFew); }},
                               {"scan of many", [&] { return scan(manyOwn, kMany); }}},
                              kRounds);

    // Behind the lists before, with whatever they have left. `status` counts this only roughly.
    manyLists.Run(kFillJournal);
    const double kept = BytesOf(manyTv.Process(), "smaps_rollup", "Anonymous:");
    manyLists.Run(kHeap); // the console's buffer is again what a list leaves
    const double heap = manyLists.Run(kHeap);
    const double keptAgain = BytesOf(manyTv.Process(), "smaps_rollup", "Anonymous:");
    const double peak = BytesOf(manyTv.Process(), "status", "VmHWM:");

    bench::TSFigure growth;
    growth.m_Name = "service_list_of_1000000_to_100000";
    growth.m_Unit = "ns/service";
    growth.m_Value = medians[1];
    growth.m_Peers = {{"of 100,000", medians[0]}};
    growth.m_Ratio = medians[1] / medians[0];
    growth.m_Limit = 1.3;

    bench::TSFigure clientHeap;
    clientHeap.m_Name = "service_list_console_heap";
    clientHeap.m_Unit = "bytes";
    clientHeap.m_Value = heap;
    clientHeap.m_Ratio = heap;
    clientHeap.m_Limit = 0;

    bench::TSFigure daemonMemory;
    daemonMemory.m_Name = "service_list_daemon_memory";
    daemonMemory.m_Unit = "bytes";
    daemonMemory.m_Value = keptAgain - kept;
    daemonMemory.m_Ratio = daemonMemory.m_Value;
    daemonMemory.m_Limit = 0;

    // What the lists have added to the line-up itself; the longest reply has 64 MiB.
    bench::TSFigure daemonPeak;
    daemonPeak.m_Name = "service_list_daemon_peak";
    daemonPeak.m_Unit = "bytes";
    daemonPeak.m_Value = peak - loaded;
    daemonPeak.m_Peers = {{"with the line-up loaded", loaded}, {"longest reply", 64 << 20}};
    daemonPeak.m_Ratio = daemonPeak.m_Value / (64 << 20);
    daemonPeak.m_Limit = 1.5;

    return bench::PrintFigures({TimeFigure("service_list_100000", medians[0], medians[2]),
                                TimeFigure("service_list_1000000", medians[1], medians[3]), growth,
                                clientHeap, daemonMemory, daemonPeak})
               ? 0
               : 1;
}
