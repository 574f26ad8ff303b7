// Signals from the daemon to the console's output, while its menu keeps answering: how many per
// second, and whether all of them arrive. For comparison a loop that writes the same lines.

#include <chrono>
#include <string>

#include "ConsoleProcess.h"
#include "Figure.h"
#include "Program.h"
#include "Rounds.h"
#include "SimulatedTv.h"

namespace {

constexpr std::size_t kSignals = 10000;
constexpr int kRounds = 9;
constexpr char kLine[] = "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: "
                         "18014398509482147885\n";
constexpr char kNewMenu[] = "\n\ncmd> ";

double SecondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main() {
    const bench::SimulatedTv tv;
    bench::ConsoleProcess console({HOST, PLUGIN});
    console.Await(kNewMenu);
    console.Type("5\n");
    console.Await(" 21. Set boot up service\n");
    console.Await(kNewMenu);
    // The test console subscribes before its first menu.
    bench::OutputOf({SIMCTL, "wait", "/subscribers/0/client >= 1"});

    const std::vector<std::string> send = {SIMCTL, "signal", "193", "serviceId=18014398509482147885",
                                           "count=" + std::to_string(kSignals)};
    const auto consoleRound = [&] {
        const std::size_t before = console.Count("SERVICE_DONE");
        const auto begin = std::chrono::steady_clock::now();
        bench::OutputOf(send);
        // The menu answers in the meantime.
        console.Type("9\n9\n9\n9\n");
        console.Await("SERVICE_DONE", kSignals);
        const double seconds = SecondsSince(begin);
        console.Type("0\n");
        console.Await("Command not recognized");
        if (console.Count("SERVICE_DONE") != before + kSignals)
            bench::GiveUp("signals were lost or came twice");
        return static_cast<double>(kSignals) / seconds;
    };
    const auto loopRound = [&] {
        const auto run = bench::RunPiped({LINE_LOOP, kLine, std::to_string(kSignals)}, "");
        return static_cast<double>(kSignals) / run.seconds;
    };
    const std::vector<double> medians =
        bench::MedianOfRounds({{"console", consoleRound}, {"bare loop", loopRound}}, kRounds);

    bench::Figure figure;
    figure.name = "signals_printed";
    figure.unit = "signals/s";
    figure.value = medians[0];
    figure.peers = {{"bare loop", medians[1]}, {"asked for", 10000}};
    figure.ratio = medians[0] / 10000;
    figure.limit = 1;
    figure.atLeast = true;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
