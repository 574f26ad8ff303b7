// One small call: 16 bytes of command out, a status and a screen of some 200 bytes back. The
// plug-in's own proxy and the daemon as it ships, compared with a bare ping-pong and two bus
// libraries with the same screen; and the same call while 500 other clients are connected, or while
// 1,000 wait for values that do not change.

#include "DebugPrintControlProxy.h"
#include "Figure.h"
#include "GDBusPeer.h"
#include "IdleClients.h"
#include "RoundProcess.h"
#include "Rounds.h"
#include "SdBusPeer.h"
#include "SeqpacketPeer.h"
#include "SimulatedTv.h"

namespace {

constexpr int kCalls = 4000;
constexpr int kRounds = 21;
// The daemon accepts 512 connections.
constexpr int kIdleClients = 500;
constexpr int kWaiters = 1000;

// The daemon's shortest screen is its answer to an unknown word of this length.
constexpr char kScreen[] = "qos";
constexpr char kWord[] = "sixteen-letters.";

// The screen of the measured call.
std::string OpenDialogue(TCDebugPrintControlProxy& control) {
    std::string screen;
    if (control.Start(screen) <= 0)
        bench::GiveUp("the dialogue could not be opened");
    if (control.Execute(kScreen, screen) <= 0 || control.Execute(kWord, screen) <= 0)
        bench::GiveUp("the dialogue did not go on");
    return screen;
}

template <class Peer> double RunCalls(Peer& peer) {
    const std::string word = kWord;
    std::string screen;
    return bench::NanosecondsEach(kCalls, [&] { peer.Execute(word, screen); });
}

// Runs in a separate process with its own TV.
double RunCallsAmongOthers() {
    static auto* const control = [] {
        auto* opened = new TCDebugPrintControlProxy(bench::kInterface);
        OpenDialogue(*opened);
        return opened;
    }();
    return RunCalls(*control);
}

} // namespace

int main() {
    const bench::SimulatedTv crowdedTv;
    bench::RoundProcess amongOthers({RunCallsAmongOthers});
    const bench::IdleClients idle(kIdleClients);
    const bench::SimulatedTv waitedTv;
    bench::RoundProcess amongWaiters({RunCallsAmongOthers});
    const bench::Waiters waiters(kWaiters);

    const bench::SimulatedTv tv;
    TCDebugPrintControlProxy control(bench::kInterface);
    bench::Answers answers;
    answers.screen = OpenDialogue(control);
    if (answers.screen.size() < 200 || answers.screen.size() > 300)
        bench::GiveUp("the screen has another length than the figure is about");
    bench::SeqpacketPeer bare(answers.screen);
    bench::SdBusPeer sdBus(answers);
    bench::GDBusPeer gdBus(answers);
    sdBus.Connect();
    gdBus.Connect();

    const std::vector<double> medians =
        bench::MedianOfRounds({{"Execute", [&] { return RunCalls(control); }},
                               {"bare seqpacket", [&] { return RunCalls(bare); }},
                               {"sd-bus", [&] { return RunCalls(sdBus); }},
                               {"GDBus", [&] { return RunCalls(gdBus); }},
                               {"Execute among others", [&] { return amongOthers.Run(0); }},
                               {"Execute among waiters", [&] { return amongWaiters.Run(0); }}},
                              kRounds);

    bench::Figure execute;
    execute.name = "execute";
    execute.unit = "ns";
    execute.value = medians[0];
    execute.peers = {{"bare seqpacket ping-pong", medians[1]},
                     {"sd-bus peer to peer", medians[2]},
                     {"GDBus peer to peer", medians[3]}};
    execute.ratio = medians[0] / medians[1];
    execute.limit = 1.5;

    bench::Figure crowded;
    crowded.name = "execute_with_500_idle_clients";
    crowded.unit = "ns";
    crowded.value = medians[4];
    crowded.peers = {{"without others", medians[0]}};
    crowded.ratio = medians[4] / medians[0];
    crowded.limit = 1.15;

    bench::Figure waited;
    waited.name = "execute_with_1000_waiters";
    waited.unit = "ns";
    waited.value = medians[5];
    waited.peers = {{"without waiters", medians[0]}};
    waited.ratio = medians[5] / medians[0];
    waited.limit = 2;
    return bench::PrintFigures({execute, crowded, waited}) ? 0 : 1;
}
