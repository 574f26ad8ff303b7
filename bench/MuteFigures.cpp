// A round through the mute test: four words, two calls. What the console itself takes, its calls
// left out, beside a loop that reads, converts and writes the same.

#include "FarSide.h"
#include "Figure.h"
#include "Program.h"
#include "Rounds.h"
#include "SimulatedTv.h"

#include <string>

#include <norvex/client/AVControl.h>
#include <norvex/client/NorvexAPI.h>

namespace {

constexpr int kTurns = 20000;
constexpr int kRounds = 9;

std::string Visit(int turns) {
    std::string words = "5 2 0 ";
    for (int i = 0; i < turns; ++i)
        words += "1 1 2 0 ";
    return words + "99 0 99 99\n";
}

} // namespace

int main() {
    const bench::TCSimulatedTv tv;
    const std::vector<std::string> host = {HOST, PLUGIN};

    // The console's own bytes of one round, taken from it.
    const std::size_t enough = 1 << 16;
    const std::string one = bench::RunPiped(host, Visit(1), enough).m_Output;
    const std::string value = "Off:0 / On:1 ";
    const std::size_t end = one.find(value);
    const std::size_t begin = one.rfind("\t[", end);
    if (end == std::string::npos || begin == std::string::npos)
        bench::GiveUp("the mute test does not ask for a value");
    const std::size_t frame = one.rfind('\n', begin - 2);
    const std::string menu = one.substr(frame + 1, end - frame - 1);

    const std::string nothing = Visit(0);
    const std::string input = Visit(kTurns);
    std::string loopInput;
    for (int i = 0; i < kTurns; ++i)
        loopInput += "1 1 2 0 ";
    const std::vector<std::string> loop = {MUTE_LOOP, menu, value};
    const std::size_t written =
        bench::RunPiped(host, input).m_OutputSize - bench::RunPiped(host, nothing).m_OutputSize;
    if (written != bench::RunPiped(loop, loopInput).m_OutputSize - menu.size())
        bench::GiveUp("the bare loop does not write as many bytes as the console");

    IAVControl* avControl = nullptr;
    if (NorvexAPI::CreateAVControl(PROFILE_MAIN, 0, &avControl) != 0)
        bench::GiveUp("the TV gives no control of sound and picture");
    const auto calls = [&] {
        avControl->MuteVideo(1);
        avControl->MuteAudio(0);
    };
    const auto each = [](double seconds) { return seconds * 1e9 / kTurns; };
    const std::vector<double> medians = bench::MedianOfRounds(
        {{"console", [&] { return each(bench::RunPiped(host, input).m_Seconds); }},
         {"visit", [&] { return each(bench::RunPiped(host, nothing).m_Seconds); }},
         {"calls", [&] { return bench::NanosecondsEach(kTurns, calls); }},
         {"bare loop", [&] { return each(bench::RunPiped(loop, loopInput).m_Seconds); }},
         {"empty loop", [&] { return each(bench::RunPiped(loop, "").m_Seconds); }}},
        kRounds);
    NorvexAPI::Destroy(avControl);

    const double console = medians[0] - medians[1] - medians[2];
    const double bare = medians[3] - medians[4];
    bench::TSFigure figure;
    figure.m_Name = "mute_round_without_calls";
    figure.m_Unit = "ns";
    figure.m_Value = console;
    figure.m_Peers = {{"bare loop", bare}, {"its two calls", medians[2]}};
    figure.m_Ratio = console / bare;
    figure.m_Limit = 1.5;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
