#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "LineUpTv.h"

namespace {

const char kTwoTransponders[] = "transponder air 474000\n"
                                "service 0x1 1 \"One\"\n"
                                "service 0x2 2 \"Two\"\n"
                                "  programme 00:00 1440 \"All day\"\n"
                                "transponder air 482000\n"
                                "service 0x8000000000000003 3 \"Three\"\n"
                                "transponder air 490000\n"
                                "service 0x4 4 \"Guide\" barker\n"
                                "transponder cable 330000\n"
                                "service 0x5 5 \"Cable\"\n"
                                "transponder satellite 11347000\n"
                                "service 0x6 6 \"Secret guide\" barker unlisted\n"
                                "streamed air\n"
                                "service 0x7 7 \"Stream\"\n";
constexpr std::uint64_t kThree = 0x8000000000000003ULL;

using namespace interfaces;

class ScanClient : public LineUpClient {
public:
    using LineUpClient::LineUpClient;

    std::int32_t StartTuneAround(const Services& services) {
        return Do(ScanControlMethod::StartTuneAround, services, "DebugMenu");
    }
    std::int32_t StopManualScan() { return Do(ScanControlMethod::StopManualScan); }
    std::int32_t IsBarkerChannelScanAvailable(std::int32_t antenna) {
        return Do(ScanControlMethod::IsBarkerChannelScanAvailable, sim::TvMode{antenna, -1});
    }
    std::int32_t StartBarkerChannelScan(std::int32_t antenna) {
        return Do(ScanControlMethod::StartBarkerChannelScan, "", sim::TvMode{antenna, -1});
    }
    std::int32_t StopBarkerChannelScan() { return Do(ScanControlMethod::StopBarkerChannelScan); }
};

class ScansTest : public testing::Test {
protected:
    void SetUp() override {
        EXPECT_EQ(tv.Set("scan-pace", {"0"}), "");
        EXPECT_EQ(tv.Set("clock", {"2026-03-01T20:15:00Z"}), "");
        for (const std::int32_t type : {81, 193, 194, 195})
            EXPECT_EQ(client.Subscribe(type), kDone);
    }
    Signals WaitForEnd() {
        tv.WaitUntil([&] { return tv.State("/scan/running").is_null(); });
        return client.TakeSignals();
    }
    std::string Tuner() { return tv.MainState("tuner/at"); }

    LineUpTv tv{kTwoTransponders};
    ScanClient client{tv};
};

TEST_F(ScansTest, TuneAroundTellsOfEachServiceAndOfItsEnd) {
    EXPECT_EQ(client.StartTuneAround({1, 2, kThree}), kDone);
    EXPECT_TRUE(client.TakeSignals().empty()); // in the background
    EXPECT_EQ(tv.State("/scan/running"), "tuneAround");
    EXPECT_EQ(tv.State("/scan/of"), 3);
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x100000001", "193 1:0 0x1", "81 1:0 0x200000001", "193 1:0 0x2",
                                     "81 1:0 0x300000001", "193 1:0 0x8000000000000003", "194 1:0 0x0"}));
    EXPECT_EQ(tv.State("/scan/last"), "completed");
    EXPECT_EQ(tv.State("/scan/done"), 3);
}

TEST_F(ScansTest, TuneAroundCollectsMissingProgrammes) {
    EXPECT_EQ(client.IsTuneAroundNeeded({1, 2, kThree}), 1);
    EXPECT_EQ(client.StartTuneAround({1, 2, kThree}), kDone);
    WaitForEnd();
    EXPECT_EQ(client.IsTuneAroundNeeded({1, 2, kThree}), 0);
    EXPECT_EQ(client.IsTuneAroundNeeded({4}), 1);
    // Only the rest of the hour is known; programmes of the line-up stay unchanged.
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T21:00:00Z"}), "");
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
    EXPECT_EQ(tv.Show(), LineUpTv(kTwoTransponders).Show());
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T20:59:00Z"}), "");
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 0);
    tv.context.Reset();
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T20:59:00Z"}), "");
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
}

TEST_F(ScansTest, TheTunerIsMovedToEachServiceAndGoesBack) {
    EXPECT_EQ(client.SetService(1), kDone);
    EXPECT_EQ(Tuner(), "air/474000");
    EXPECT_EQ(tv.Set("scan-pace", {"3600000"}), "");
    EXPECT_EQ(client.StartTuneAround({kThree, 5}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x8000000000000003"; });
    EXPECT_EQ(Tuner(), "air/482000");
    // The picture does not change.
    EXPECT_EQ(tv.MainState("service"), "0x1");
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(Tuner(), "air/474000");
    EXPECT_TRUE(tv.State("/scan/service").is_null());
}

TEST_F(ScansTest, ACutTransponderYieldsNothing) {
    EXPECT_EQ(tv.Set("tuner", {"air/482000", "off"}), "");
    EXPECT_EQ(client.StartTuneAround({1, kThree, 7}), kDone);
    EXPECT_EQ(WaitForEnd(),
              (Signals{"81 1:0 0x100000001", "193 1:0 0x1", "81 1:0 0x700000009", "193 1:0 0x7", "194 1:0 0x0"}));
    EXPECT_EQ(client.IsTuneAroundNeeded({kThree}), 1);
    EXPECT_EQ(client.IsTuneAroundNeeded({1, 7}), 0);
    EXPECT_EQ(tv.State("/scan/done"), 2);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "tune around completed, 2 of 3 services done"));
}

TEST_F(ScansTest, ASignalThatIsCutWhileAServiceIsScannedYieldsNoProgramme) {
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x1"; });
    EXPECT_EQ(tv.Set("tuner", {"air", "off"}), "");
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x100000001", "194 1:0 0x0"}));
}

TEST_F(ScansTest, AServiceThatTheLineUpNoLongerHasIsNotDone) {
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartTuneAround({1, 2, kThree}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x1"; });
    EXPECT_EQ(tv.Load("transponder air 482000\nservice 0x8000000000000003 3 \"Three\""), "");
    EXPECT_EQ(WaitForEnd(),
              (Signals{"81 1:0 0x100000001", "81 1:0 0x300000001", "193 1:0 0x8000000000000003", "194 1:0 0x0"}));
    EXPECT_EQ(tv.State("/scan/done"), 1);
    EXPECT_EQ(tv.State("/scan/of"), 3);
}

TEST_F(ScansTest, AViewerWhoTunesMeanwhileTakesTheTunerBack) {
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartTuneAround({1, 2}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x1"; });
    EXPECT_EQ(client.SetService(kThree), kDone);
    EXPECT_EQ(Tuner(), "air/482000");
    EXPECT_EQ(tv.MainState("receiving"), true);
    EXPECT_EQ(client.TakeSignals(), (Signals{"81 1:0 0x100000001", "81 1:0 0x300000001"}));
    // Without 193 for the first; the next service is visited, and the viewer's returns afterwards.
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x200000001", "193 1:0 0x2", "194 1:0 0x0", "81 1:0 0x300000001"}));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "tune around completed, 1 of 2 services done"));
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
    EXPECT_EQ(Tuner(), "air/482000");
}

TEST_F(ScansTest, TheTunerStaysWhereAViewerHasMovedIt) {
    EXPECT_EQ(tv.Set("scan-pace", {"3600000"}), "");
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x1"; });
    EXPECT_EQ(client.SetTvMode({1, 0}), kDone); // nothing has been shown there
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(Tuner(), "cable");
}

TEST_F(ScansTest, APipelineReceivesNothingWhileItsTunerIsElsewhere) {
    EXPECT_EQ(client.SetService(1), kDone);
    EXPECT_EQ(tv.Set("scan-pace", {"3600000"}), "");
    EXPECT_EQ(client.StartTuneAround({2}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x2"; });
    EXPECT_EQ(tv.MainState("receiving"), true); // the same transponder
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(client.StartTuneAround({kThree}), kDone);
    tv.WaitUntil([&] { return !tv.State("/scan/service").is_null(); });
    EXPECT_EQ(tv.MainState("receiving"), false);
    client.TakeSignals();
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(tv.MainState("receiving"), true);
    EXPECT_EQ(client.TakeSignals(), (Signals{"194 1:0 0x1", "81 1:0 0x100000001"}));
}

TEST_F(ScansTest, StoppedSaysSo) {
    EXPECT_EQ(tv.Set("scan-pace", {"3600000"}), "");
    EXPECT_EQ(client.StartTuneAround({1, 2}), kDone);
    tv.WaitUntil([&] { return !tv.State("/scan/service").is_null(); });
    EXPECT_EQ(client.TakeSignals(), (Signals{"81 1:0 0x100000001"}));
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(client.TakeSignals(), (Signals{"194 1:0 0x1"}));
    EXPECT_EQ(tv.State("/scan/last"), "stopped");
    EXPECT_LT(client.StopManualScan(), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "tune around cannot be stopped"));
    EXPECT_TRUE(client.TakeSignals().empty());
}

TEST_F(ScansTest, AResetEndsOneWithoutASignal) {
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    ASSERT_EQ(tv.context.Reset(), "");
    while (sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::Never)) {
    }
    EXPECT_TRUE(client.TakeSignals().empty());
    EXPECT_TRUE(tv.State("/scan/last").is_null());
}

TEST_F(ScansTest, OneRunsAtATime) {
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    EXPECT_LT(client.StartTuneAround({2}), 0);
    EXPECT_LT(client.StartBarkerChannelScan(-1), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "barker channel refused: tune around is running"));
    EXPECT_LT(client.StopBarkerChannelScan(), 0);
    EXPECT_EQ(client.StopManualScan(), kDone);
    EXPECT_EQ(client.StartBarkerChannelScan(-1), kDone);
    EXPECT_LT(client.StartTuneAround({1}), 0);
    EXPECT_LT(client.StopManualScan(), 0);
    EXPECT_EQ(client.StopBarkerChannelScan(), kDone);
    EXPECT_EQ(client.TakeSignals(), (Signals{"194 1:0 0x1", "195 1:0 0x0"}));
}

TEST_F(ScansTest, RefusesToScanNothing) {
    EXPECT_LT(client.StartTuneAround({}), 0);
    EXPECT_LT(client.StartTuneAround({kInvalidService, 99}), 0);
    EXPECT_EQ(client.StartTuneAround({99, 1}), kDone);
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x100000001", "193 1:0 0x1", "194 1:0 0x0"}));
}

// Statements that SQLite runs for the daemon.
class StatementCount {
public:
    explicit StatementCount(sim::Database& database) : m_database(database) {
        sqlite3_trace_v2(
            m_database.Get(), SQLITE_TRACE_STMT,
            [](unsigned, void* count, void*, void*) {
                ++*static_cast<std::size_t*>(count);
                return 0;
            },
            &m_count);
    }
    ~StatementCount() { sqlite3_trace_v2(m_database.Get(), 0, nullptr, nullptr); }

    std::size_t Take() { return std::exchange(m_count, 0u); }

private:
    sim::Database& m_database;
    std::size_t m_count = 0;
};

TEST_F(ScansTest, ALongListIsGoneThroughInSlices) {
    Services services(10'000, 99);
    services.front() = 1;
    services.back() = 2;
    StatementCount statements(tv.database);
    EXPECT_EQ(client.StartTuneAround(services), kDone);
    EXPECT_LT(statements.Take(), 10u);
    std::size_t most = 0;
    while (!tv.State("/scan/running").is_null()) {
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
        most = std::max(most, statements.Take());
    }
    EXPECT_LT(most, 1100u);
    EXPECT_EQ(client.TakeSignals(),
              (Signals{"81 1:0 0x100000001", "193 1:0 0x1", "81 1:0 0x200000001", "193 1:0 0x2", "194 1:0 0x0"}));
}

TEST_F(ScansTest, OneCallLooksUpALimitedNumberOfServices) {
    // Two has a programme; of the others one is enough for an answer.
    Services services(sim::Scans::kMaxLookUps, 2);
    EXPECT_EQ(client.IsTuneAroundNeeded(services), 0);
    services.push_back(1);
    EXPECT_EQ(client.IsTuneAroundNeeded(services), -4);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "IsTuneAroundNeeded refused: not for the first 100000 of 100001 services"));
    services.front() = 1;
    EXPECT_EQ(client.IsTuneAroundNeeded(services), 1);
    services.assign(sim::Scans::kMaxLookUps, 99);
    services.push_back(1);
    EXPECT_EQ(client.StartTuneAround(services), -3);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "none of the first 100000 services is in the line-up"));
}

TEST_F(ScansTest, OnlySubscribersHear) {
    LineUpClient other(tv);
    other.Subscribe(194);
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    EXPECT_EQ(WaitForEnd().size(), 3u);
    EXPECT_EQ(other.TakeSignals(), (Signals{"194 1:0 0x0"}));
}

TEST_F(ScansTest, BarkerChannelCollectsForItsAntenna) {
    EXPECT_EQ(client.IsBarkerChannelScanAvailable(-1), 1);
    EXPECT_EQ(client.IsBarkerChannelScanAvailable(0), 1);
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartBarkerChannelScan(-1), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x4"; });
    EXPECT_EQ(Tuner(), "air/490000");
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x400000001", "195 1:0 0x1"}));
    EXPECT_EQ(client.IsTuneAroundNeeded({1, 2, kThree, 4}), 0);
    EXPECT_EQ(client.IsTuneAroundNeeded({5}), 1); // cable
    EXPECT_EQ(client.IsTuneAroundNeeded({7}), 1); // streamed
}

TEST_F(ScansTest, BarkerChannelScanFails) {
    // Cable has none, the satellite's is not listed.
    for (const std::int32_t antenna : {1, 2}) {
        EXPECT_EQ(client.IsBarkerChannelScanAvailable(antenna), 0);
        EXPECT_EQ(client.StartBarkerChannelScan(antenna), kDone);
        EXPECT_EQ(WaitForEnd(), (Signals{"195 1:0 0x0"}));
        EXPECT_EQ(tv.State("/scan/last"), "failed");
    }
    EXPECT_LT(client.IsBarkerChannelScanAvailable(3), 0);
    EXPECT_LT(client.StartBarkerChannelScan(3), 0);
    EXPECT_EQ(tv.Set("tuner", {"air/490000", "off"}), "");
    EXPECT_EQ(client.IsBarkerChannelScanAvailable(0), 1);
    EXPECT_EQ(client.StartBarkerChannelScan(0), kDone);
    EXPECT_EQ(WaitForEnd(), (Signals{"195 1:0 0x0"}));
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
}

TEST_F(ScansTest, ABarkerChannelThatTheLineUpNoLongerHasFails) {
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartBarkerChannelScan(0), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x4"; });
    EXPECT_EQ(tv.Load("transponder air 474000\nservice 0x1 1 \"One\""), "");
    EXPECT_EQ(WaitForEnd(), (Signals{"81 1:0 0x400000001", "195 1:0 0x0"}));
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
}

TEST_F(ScansTest, GoesOnWithAnotherLineUp) {
    EXPECT_EQ(tv.Set("scan-pace", {"1"}), "");
    EXPECT_EQ(client.StartTuneAround({1, 2, kThree}), kDone);
    tv.WaitUntil([&] { return tv.State("/scan/service") == "0x1"; });
    EXPECT_EQ(tv.Load("transponder air 1000\nservice 0x8000000000000003 9 \"Moved\""), "");
    EXPECT_EQ(WaitForEnd().back(), "194 1:0 0x0");
    EXPECT_EQ(client.IsTuneAroundNeeded({kThree}), 0);
}

TEST_F(ScansTest, ResetEndsItWithoutAWord) {
    EXPECT_EQ(client.StartTuneAround({1}), kDone);
    tv.context.Reset();
    EXPECT_TRUE(tv.State("/scan/running").is_null());
    EXPECT_TRUE(tv.State("/scan/last").is_null());
    EXPECT_EQ(tv.State("/scan/paceMs"), sim::Scans::kDefaultPace);
    EXPECT_TRUE(client.TakeSignals().empty());
    EXPECT_NE(tv.Set("scan-pace", {"3600001"}), "");
    EXPECT_NE(tv.Set("scan-pace", {"fast"}), "");
}

} // namespace
