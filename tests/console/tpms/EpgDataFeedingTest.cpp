// Item 18: feeding the programme guide.

#include <chrono>

#include "MainLoopWatch.h"
#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class EpgDataFeeding : public TPMSScenario {
protected:
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kEpgDataFeeding, words); }
    // The programmes are checked: what happens between the list and the line that counts those
    // without data.
    std::string CheckProgrammes(int missing, int records) {
        const std::string before = "{menu}<1>{GetNavigationCriteria(1, 0)}{CriteriaHelper.Fetch(12)}"
                                   "{CriteriaHelper.Fetch(4)}{CriteriaHelper.Fetch(13)}{CriteriaHelper.Fetch(14)}"
                                   "{ServiceNavigation.GetServiceList(0, {-1, -1}, 0, 0)}";
        std::string after = "\tno data in " + std::to_string(missing) + " programs\n";
        for (int i = 0; i < records; ++i)
            after += "{~ServiceData}";
        after += "{~CriteriaHelper}";
        const std::string dialogue = Visit("1");
        EXPECT_TRUE(dialogue.starts_with(before) && dialogue.ends_with(after)) << dialogue;
        return dialogue.substr(before.size(), dialogue.size() - before.size() - after.size());
    }
};

// A service whose programme is asked for; `shown` is the line for one with a title, which is asked
// for with 256 units of zeros and room for 255.
std::string Programme(const std::string& serviceId) {
    return "{ServiceGuide.GetCurrentProgram(" + serviceId + ", true)}{~ProgramData}";
}
std::string Titled(const std::string& serviceId, const std::string& shown) {
    return "{ServiceGuide.GetCurrentProgram(" + serviceId + ", true)}{ProgramData.Title(256, 255)}" + shown +
           "{~ProgramData}";
}
std::string Scanned(const std::string& call, const std::string& line) {
    return "{ScanControl." + call + "}\tcalled " + line + "\n";
}
std::string Subscribed(const std::string& signal) {
    return "{SignalSubscriber.Subscribe(" + signal + ", 0, 702, 0, 0)}";
}
std::string Unsubscribed(const std::string& signal) {
    return "{SignalSubscriber.Unsubscribe(" + signal + ", 702, 0, 0)}";
}
const std::string kStarting = "{menu}<3>" + Subscribed("81") + Subscribed("193") + Subscribed("194");
const std::string kStopped = Unsubscribed("81") + Unsubscribed("193") + Unsubscribed("194");

} // namespace

TEST_F(EpgDataFeeding, CountsNoProgrammesInAnEmptyChannelList) {
    EXPECT_EQ(CheckProgrammes(0, 0), "");
}

TEST_F(EpgDataFeeding, ShowsTheProgrammeOfOneChannelOfThree) {
    tv.GiveServiceList({{{{12, 1}, {4, 111}, {13, 5}, {14, 2}}},
                        {{{12, 2}, {4, 474000}, {13, 7}, {14, 1}}},
                        {{{12, 3}, {4, 222}, {13, 6}, {14, 3}}}});
    tv.Answer("ServiceGuide.GetCurrentProgram", {0, 1, -1});
    tv.GiveProgram(std::nullopt);
    tv.GiveProgram(12);
    EXPECT_EQ(CheckProgrammes(2, 3), Programme("0x0000000000000001") +
                                         Titled("0x0000000000000002", "\tfreq:474000 -> 7-1: title size: 12\n") +
                                         Programme("0x0000000000000003"));
}

TEST_F(EpgDataFeeding, ShowsEveryProgrammeInTheOrderOfTheListEachFromAFreshBuffer) {
    tv.GiveServiceList({{{{12, -1}, {4, -5}, {13, -7}, {14, -2147483648}}},
                        {{{12, 2}, {4, 2147483647}, {13, 65535}, {14, 0}}},
                        {{{12, 3}, {4, 2}, {13, 2}, {14, 2}}}});
    tv.GiveProgram(255);
    tv.GiveProgram(4294967295U);
    tv.GiveProgram(0);
    EXPECT_EQ(CheckProgrammes(0, 3),
              Titled("0xffffffffffffffff", "\tfreq:-5 -> -7--2147483648: title size: 255\n") +
                  Titled("0x0000000000000002", "\tfreq:2147483647 -> 65535-0: title size: 4294967295\n") +
                  Titled("0x0000000000000003", "\tfreq:2 -> 2-2: title size: 0\n"));
}

TEST_F(EpgDataFeeding, CountsAProgrammeWithoutATitleAsNoData) {
    tv.GiveServiceList({{{{12, 1}, {4, 111}, {13, 5}, {14, 2}}}});
    tv.GiveProgram(std::nullopt);
    EXPECT_EQ(CheckProgrammes(1, 1), Titled("0x0000000000000001", ""));
}

TEST_F(EpgDataFeeding, ShowsMinusOneForFieldsThatAreMissingOrHaveNoValue) {
    tv.GiveServiceList({{{{12, 1}}}, {{{12, 1}, {4, std::nullopt}, {13, 5}, {14, std::nullopt}}}});
    tv.GiveProgram(9);
    tv.GiveProgram(9);
    EXPECT_EQ(CheckProgrammes(0, 2),
              Titled("0x0000000000000001", MissingTag("  4") + MissingTag(" 13") + MissingTag(" 14") +
                                               "\tfreq:-1 -> -1--1: title size: 9\n") +
                  Titled("0x0000000000000001", EmptyTag("4") + MissingTag("  4") + EmptyTag("14") + MissingTag(" 14") +
                                                   "\tfreq:-1 -> 5--1: title size: 9\n"));
}

TEST_F(EpgDataFeeding, AsksForTheProgrammeOfTheInvalidIdOfARecordWithoutFields) {
    tv.GiveServiceList({{{}, false}});
    tv.Answer("ServiceNavigation.GetServiceList", {-1});
    EXPECT_EQ(CheckProgrammes(1, 1), MissingTag(" 12") + Programme("0xffffffffffffffff"))
        << "whatever the list's answer";
}

// The counter has 16 bits.
TEST_F(EpgDataFeeding, CountsProgrammesFromTheBeginningAfter65535) {
    constexpr int kChannels = 65537;
    tv.GiveServiceList(std::vector<FakeRecord>(kChannels, {{{12, 1}, {4, 2}, {13, 3}, {14, 4}}, true}));
    for (int i = 0; i < kChannels; ++i)
        tv.GiveProgram(5);
    console.Type("1 99").Run([this] { menus.m_EpgDataFeeding(); });
    const std::string line = "\tfreq:2 -> 3-4: title size: 5\n";
    const std::string menu = screens::kEpgDataFeeding + "\ncmd> ";
    const std::string end = line + "\tno data in 65536 programs\n" + menu;
    const std::string transcript = console.Transcript();
    EXPECT_TRUE(transcript.ends_with(end)) << transcript.substr(transcript.size() - 600);
    EXPECT_EQ(transcript.size(), menu.size() + (kChannels - 1) * line.size() + end.size());
}

TEST_F(EpgDataFeeding, AsksWhetherTuneAroundIsNeededWithAFreshListEachTime) {
    tv.GiveTvMode(2, 1);
    tv.GiveServiceList({{{{12, 1}}}, {{{12, -1}}}});
    tv.Answer("ScanControl.IsTuneAroundNeeded", {-6});
    const std::string asked = "{menu}<2>" + ListServices(2, "2, 1") +
                              "{ScanControl.IsTuneAroundNeeded([0x0000000000000001:5, 0xffffffffffffffff:5])}"
                              "\tcalled IsTuneAroundNeeded, ret: ";
    EXPECT_EQ(Visit("2 2"), asked + "-6\n" + asked + "1\n");
}

TEST_F(EpgDataFeeding, AsksNothingWithoutAServiceOrATvMode) {
    EXPECT_EQ(Visit("2"), "{menu}<2>" + ListServices(0));
    tv.Answer("ServiceNavigation.GetTvMode", {-1});
    EXPECT_EQ(Visit("2"), "{menu}<2>{ServiceNavigation.GetTvMode({-1, -1})}GetTvMode failed!\n");
}

TEST_F(EpgDataFeeding, StartsTuneAroundAndSubscribesAgainAtEachStart) {
    tv.GiveServiceList({{{{12, 1}}}, {{{12, 2}}}});
    tv.Answer("ScanControl.StartTuneAround", {1, 0, -2});
    tv.Answer("SignalSubscriber.Subscribe", {-1, -1, -1});
    std::string expected;
    for (const std::string result : {"1", "0", "-2"}) {
        expected += kStarting + ListServices(2) +
                    Scanned("StartTuneAround([0x0000000000000001:5, 0x0000000000000002:5], "
                            "\"DebugMenu\")",
                            "StartTuneAround, ret: " + result);
    }
    EXPECT_EQ(Visit("3 3 3"), expected);
}

TEST_F(EpgDataFeeding, KeepsItsSubscriptionsWhenThereIsNothingToTuneTo) {
    EXPECT_EQ(Visit("3"), kStarting + ListServices(0));
}

// The manual scan's stop is meant.
TEST_F(EpgDataFeeding, StopsTuneAroundAndUnsubscribesAlsoWhenTheStopIsRefused) {
    tv.Answer("ScanControl.StopManualScan", {1, -9});
    tv.Answer("SignalSubscriber.Unsubscribe", {-1});
    EXPECT_EQ(Visit("4 4"), "{menu}<4>" + Scanned("StopManualScan()", "StopManualScan, ret: 1") + kStopped +
                                "{menu}<4>" + Scanned("StopManualScan()", "StopManualScan, ret: -9") + kStopped);
}

TEST_F(EpgDataFeeding, AsksForStartsAndStopsABarkerScan) {
    tv.GiveTvMode(2, 1);
    tv.Answer("ScanControl.IsBarkerChannelScanAvailable", {0});
    tv.Answer("ScanControl.StartBarkerChannelScan", {7});
    tv.Answer("ScanControl.StopBarkerChannelScan", {-1});
    EXPECT_EQ(Visit("5 6 7"),
              "{menu}<5>" + Scanned("IsBarkerChannelScanAvailable({-1, -1})", "IsBarkerChannelScanAvailable, ret: 0") +
                  "{menu}<6>" + Subscribed("81") + Subscribed("195") +
                  Scanned("StartBarkerChannelScan(\"\", {-1, -1})", "StartBarkerChannelScan, ret: 7") + "{menu}<7>" +
                  Scanned("StopBarkerChannelScan()", "StopBarkerChannelScan, ret: -1") + Unsubscribed("81") +
                  Unsubscribed("195"));
}

TEST_F(EpgDataFeeding, DoesNotUnsubscribeOnLeaving) {
    EXPECT_EQ(Visit("6"), "{menu}<6>" + Subscribed("81") + Subscribed("195") +
                              Scanned("StartBarkerChannelScan(\"\", {-1, -1})", "StartBarkerChannelScan, ret: 1"));
}

// Signals that the stop brings about still arrive, so that it waits before it unsubscribes.
TEST_F(EpgDataFeeding, WaitsAMillisecondAfterStoppingABarkerScan) {
    std::chrono::steady_clock::time_point stopped;
    std::chrono::steady_clock::time_point unsubscribing;
    tv.RunWithin("ScanControl.StopBarkerChannelScan", [&] { stopped = std::chrono::steady_clock::now(); });
    tv.RunWithin("SignalSubscriber.Unsubscribe", [&] { unsubscribing = std::chrono::steady_clock::now(); });
    Visit("7");
    EXPECT_GE(unsubscribing - stopped, std::chrono::milliseconds(1));
}

TEST_F(EpgDataFeeding, ShowsSignalsBetweenItsMenus) {
    tv.RunWithin("ScanControl.StopBarkerChannelScan", [] {
        MainLoopWatch::Deliver({SIGNAL_BARKER_CHANNEL_TUNE, PROFILE_MAIN, 0, {1}});
    });
    EXPECT_EQ(Visit("7"), "{menu}<7>{ScanControl.StopBarkerChannelScan()}"
                          "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:true\n"
                          "\tcalled StopBarkerChannelScan, ret: 1\n" +
                              Unsubscribed("81") + Unsubscribed("195"));
}

// What was created before is kept.
TEST_F(EpgDataFeeding, SaysWhatCouldNotBeCreated) {
    const std::pair<std::string, std::string> factories[] = {
        {"CreateScanControl", "{CreateScanControl()}"},
        {"CreateServiceGuide", "{CreateScanControl()}{CreateServiceGuide()}"},
        {"CreateServiceNavigation", kEpgDataFeeding.opening}};
    int result = -1;
    for (const auto& [factory, calls] : factories) {
        tv.AnswerCreation(factory, result, false);
        EXPECT_EQ(TPMSScenario::Visit("18"), calls + factory + " failed\n");
        tv.AnswerCreation(factory, result, false);
        bool ran = true;
        Run("", [&] { ran = menus.m_EpgDataFeeding(); });
        EXPECT_FALSE(ran) << factory;
        result = 1;
    }
    bool ran = false;
    Run("99", [&] { ran = menus.m_EpgDataFeeding(); });
    EXPECT_TRUE(ran);
    kept = {"ScanControl", "ScanControl#2", "ScanControl#3", "ServiceGuide", "ScanControl#4", "ServiceGuide#2"};
}
