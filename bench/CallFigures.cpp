// One small call: a word of 16 bytes there, a status and a screen of some 200 bytes back. The
// plug-in's own proxy against the daemon as it ships, beside a bare ping-pong and two bus libraries
// that carry the very same screen.

#include "DebugPrintControlProxy.h"
#include "Figure.h"
#include "GDBusPeer.h"
#include "Rounds.h"
#include "SdBusPeer.h"
#include "SeqpacketPeer.h"
#include "SimulatedTv.h"

namespace {

constexpr int kCalls = 4000;
constexpr int kRounds = 21;

// The daemon's shortest screen answers a word of this length that it does not know.
constexpr char kScreen[] = "qos";
constexpr char kWord[] = "sixteen-letters.";

} // namespace

int main() {
    const bench::TCSimulatedTv tv;
    TCDebugPrintControlProxy control("com.holvi.IDebugPrintControl");
    std::string screen;
    if (control.Start(screen) <= 0)
        bench::GiveUp("the dialogue could not be opened");
    if (control.Execute(kScreen, screen) <= 0 || control.Execute(kWord, screen) <= 0)
        bench::GiveUp("the dialogue did not go on");
    if (screen.size() < 200 || screen.size() > 300)
        bench::GiveUp("the screen has another length than the figure is about");

    bench::TSAnswers answers;
    answers.m_Screen = screen;
    bench::TCSeqpacketPeer bare(answers.m_Screen);
    bench::TCSdBusPeer sdBus(answers);
    bench::TCGDBusPeer gdBus(answers);
    sdBus.Connect();
    gdBus.Connect();

    const std::string word = kWord;
    const auto round = [&word, &screen](auto& peer) {
        return bench::NanosecondsEach(kCalls, [&] { peer.Execute(word, screen); });
    };
    const std::vector<double> medians =
        bench::MedianOfRounds({{"Execute", [&] { return round(control); }},
                               {"bare seqpacket", [&] { return round(bare); }},
                               {"sd-bus", [&] { return round(sdBus); }},
                               {"GDBus", [&] { return round(gdBus); }}},
                              kRounds);

    bench::TSFigure figure;
    figure.m_Name = "execute";
    figure.m_Unit = "ns";
    figure.m_Value = medians[0];
    figure.m_Peers = {{"bare seqpacket ping-pong", medians[1]},
                      {"sd-bus peer to peer", medians[2]},
                      {"GDBus peer to peer", medians[3]}};
    figure.m_Ratio = medians[0] / medians[1];
    figure.m_Limit = 1.5;
    return bench::PrintFigures({figure}) ? 0 : 1;
}
