// A round through the mute test: four words, two calls. The console's own time, compared with a
// loop that reads, converts and writes the same; the round with its calls is also shown.

#include <string>

#include "Figure.h"
#include "Program.h"
#include "Rounds.h"
#include "SimulatedTv.h"

namespace {

constexpr int kTurns = 20000;
constexpr int kRounds = 9;

std::string Turns(int count) {
    std::string words;
    for (int i = 0; i < count; ++i)
        words += "1 1 2 0 ";
    return words;
}

// First the screen's number, last the words that leave.
std::string Words(int turns) {
    return "0 " + Turns(turns) + "99 0\n";
}

} // namespace

int main() {
    const bench::SimulatedTv tv;
    const std::vector<std::string> console = {MUTE_CONSOLE};
    const std::vector<std::string> host = {HOST, PLUGIN};

    // The console's bytes of one round, recorded from it.
    const std::string one = bench::RunPiped(console, Words(1), 1 << 16).output;
    const std::string value = "Off:0 / On:1 ";
    const std::size_t first = one.find(value) + value.size();
    const std::size_t second = one.find(value, first);
    if (second == std::string::npos)
        bench::GiveUp("the mute test does not ask for a value");
    const std::string menu = one.substr(first, second - first);

    const std::string input = Words(kTurns);
    const std::vector<std::string> loop = {MUTE_LOOP, menu, value};
    const std::size_t written =
        bench::RunPiped(console, input).outputSize - bench::RunPiped(console, Words(0)).outputSize;
    if (written != bench::RunPiped(loop, Turns(kTurns)).outputSize - menu.size())
        bench::GiveUp("the bare loop does not write as many bytes as the console");

    const auto each = [](const std::vector<std::string>& program, const std::string& words) {
        return bench::RunPiped(program, words).seconds * 1e9 / kTurns;
    };
    const std::string whole = "5 2 " + input + "99 99\n";
    const std::vector<double> medians = bench::MedianOfRounds({{"console", [&] { return each(console, input); }},
                                                               {"bare loop", [&] { return each(loop, Turns(kTurns)); }},
                                                               {"with calls", [&] { return each(host, whole); }}},
                                                              kRounds);

    bench::Figure figure;
    figure.name = "mute_round_without_calls";
    figure.unit = "ns";
    figure.value = medians[0];
    figure.peers = {{"bare loop", medians[1]}, {"the round with its calls", medians[2]}};
    figure.ratio = medians[0] / medians[1];
    figure.limit = 1.5;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
