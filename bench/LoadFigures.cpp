// The cost of loading the plug-in: in a fresh process each time, like the host.

#include "Figure.h"
#include "Program.h"
#include "Rounds.h"

namespace {

// LoadOnce prints the nanoseconds that one dlopen took.
double LoadOnce(const char* library) {
    return std::stod(bench::OutputOf({LOAD_ONCE, library})) / 1000;
}

} // namespace

int main() {
    const std::vector<double> medians = bench::MedianOfRounds(
        {{"plug-in", [] { return LoadOnce(PLUGIN); }}, {"empty library", [] { return LoadOnce(EMPTY_LIBRARY); }}}, 101);

    bench::Figure figure;
    figure.name = "plugin_load";
    figure.unit = "us";
    figure.value = medians[0];
    figure.peers = {{"empty library with GLib", medians[1]}};
    figure.ratio = medians[0] / medians[1];
    figure.limit = 2.0;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
