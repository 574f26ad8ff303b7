// The console's check for programmes of ten thousand services: a list, a call and a line per
// service, compared with a bare loop of as many small calls and lines, and SQLite's look-ups. Calls
// and lines are in one loop: each line wakes the reader of the pipe during the next call, unlike
// lines written at once.

#include <string>

#include "Figure.h"
#include "LineUp.h"
#include "Program.h"
#include "Rounds.h"
#include "SimulatedTv.h"

namespace {

constexpr int kServices = 10000;
constexpr int kRounds = 9;
constexpr int kNoon = 12 * 3600;

// Enters the test console, checks the programmes and leaves.
std::string Words(const std::string& words) {
    return "5 18 " + words + "99 99 99\n";
}

} // namespace

int main() {
    const bench::LineUp lineUp(kServices, true);
    const bench::SimulatedTv tv({"--lineup", lineUp.GetPath()});
    bench::LineUpDatabase database(lineUp);
    const std::vector<std::string> host = {HOST, PLUGIN};

    // The lines, recorded from the console; those of the last services are the longest.
    const std::size_t enough = 1 << 20;
    const std::string output = bench::RunPiped(host, Words("1 "), enough).output;
    const std::size_t end = output.find("\tno data in 0 programs\n");
    const std::size_t begin = end == std::string::npos ? end : output.rfind("\tfreq:", end);
    if (begin == std::string::npos)
        bench::GiveUp("the console does not see a programme of each service");
    const std::string line = output.substr(begin, end - begin);

    const auto lookups = [&] {
        for (const std::uint64_t service : database.List()) {
            if (database.FindTitleSize(service, kNoon) == 0)
                bench::GiveUp("SQLite did not find a programme");
        }
    };

    const auto loop = [&](const char* program, int times) {
        return std::vector<std::string>{program, line, std::to_string(times)};
    };
    const auto run = [](const std::vector<std::string>& words, const std::string& input) {
        return bench::RunPiped(words, input).seconds * 1e3;
    };
    const std::vector<double> medians =
        bench::MedianOfRounds({{"check", [&] { return run(host, Words("1 ")); }},
                               {"entering and leaving", [&] { return run(host, Words("")); }},
                               {"calls and lines", [&] { return run(loop(CALL_LOOP, kServices + 1), ""); }},
                               {"no calls", [&] { return run(loop(CALL_LOOP, 0), ""); }},
                               {"SQLite", [&] { return bench::NanosecondsEach(1, lookups) / 1e6; }},
                               {"lines", [&] { return run(loop(LINE_LOOP, kServices + 1), ""); }},
                               {"no lines", [&] { return run(loop(LINE_LOOP, 0), ""); }}},
                              kRounds);
    const double calls = medians[2] - medians[3];

    bench::Figure figure;
    figure.name = "programme_check_10000";
    figure.unit = "ms";
    figure.value = medians[0] - medians[1];
    figure.peers = {{"10,001 small calls, a line after each", calls},
                    {"SQLite's look-ups", medians[4]},
                    {"10,001 lines alone", medians[5] - medians[6]}};
    figure.ratio = figure.value / (calls + medians[4]);
    figure.limit = 1.3;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
