// Item 18: feeding the programme guide.

#include <chrono>

#include "MainLoopWatch.h"
#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class EpgDataFeeding : public TPMSScenario {};

const std::string kMenu = "====================================\n"
                          "\t[Test18 List - Epg Data Feeding]\t\n"
                          "------------------------------------\n"
                          " 1. Check if programs available\n"
                          " 2. Is Tune Around Needed\n"
                          " 3. Start Tune Around\n"
                          " 4. Stop Tune Around\n"
                          " 5. Is Barker Channel scan available\n"
                          " 6. Start Barker Channel scan\n"
                          " 7. Stop Barker Channel scan\n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n"
                          "\n";
const std::string kCreated =
    "{CreateScanControl()}{CreateServiceGuide()}{CreateServiceNavigation(1, 0)}" + kMenu;
const std::string kDestroyed =
    "{Destroy(ServiceNavigation)}{Destroy(ServiceGuide)}{Destroy(ScanControl)}";
const std::string kDone = kMenu + cmd("99") + kDestroyed;

// The query for the programmes, and the list's call.
const std::string kAskedForProgrammes =
    "{GetNavigationCriteria(1, 0)}{CriteriaHelper.Fetch(12)}{CriteriaHelper.Fetch(4)}"
    "{CriteriaHelper.Fetch(13)}{CriteriaHelper.Fetch(14)}"
    "{ServiceNavigation.GetServiceList(0, {-1, -1}, 0, 0)}";
// The query for the services that are scanned.
std::string askedForServices(const std::string& tvMode = "{0, 0}") {
    return "{ServiceNavigation.GetTvMode({-1, -1})}{GetNavigationCriteria(1, 0)}"
           "{CriteriaHelper.WhereNot(1, 9)}{CriteriaHelper.Fetch(12)}"
           "{ServiceNavigation.GetServiceList(0, " +
           tvMode + ", 0, 0)}";
}
std::string program(const std::string& serviceId) {
    return "{ServiceGuide.GetCurrentProgram(" + serviceId + ", true)}";
}
// A title asked for with 256 units of zeros and room for 255.
const std::string kTitle = "{ProgramData.Title(256, 255)}";
const std::string kNext = "{~ProgramData}";
std::string freed(int records) {
    std::string text;
    for (int i = 0; i < records; ++i)
        text += "{~ServiceData}";
    return text + "{~CriteriaHelper}";
}
std::string subscribed(const std::string& signal) {
    return "{SignalSubscriber.Subscribe(" + signal + ", 0, 702, 0, 0)}";
}
std::string unsubscribed(const std::string& signal) {
    return "{SignalSubscriber.Unsubscribe(" + signal + ", 702, 0, 0)}";
}

} // namespace

TEST_F(EpgDataFeeding, CountsNoProgrammesInAnEmptyChannelList) {
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes +
                                       "\tno data in 0 programs\n" + freed(0) + kDone);
    expectWrittenWhole(kMenu);
}

TEST_F(EpgDataFeeding, TellsTheProgrammeOfOneChannelOfThree) {
    tv.giveServiceList({{{{12, 1}, {4, 111}, {13, 5}, {14, 2}}},
                        {{{12, 2}, {4, 474000}, {13, 7}, {14, 1}}},
                        {{{12, 3}, {4, 222}, {13, 6}, {14, 3}}}});
    tv.answer("ServiceGuide.GetCurrentProgram", {0, 1, -1});
    tv.giveProgram(std::nullopt);
    tv.giveProgram(12);
    EXPECT_EQ(visit("18", "1 99"),
              kCreated + cmd("1") + kAskedForProgrammes + program("0x0000000000000001") + kNext +
                  program("0x0000000000000002") + kTitle +
                  "\tfreq:474000 -> 7-1: title size: 12\n" + kNext + program("0x0000000000000003") +
                  kNext + "\tno data in 2 programs\n" + freed(3) + kDone);
}

TEST_F(EpgDataFeeding, TellsEveryProgrammeInTheOrderOfTheList) {
    tv.giveServiceList({{{{12, -1}, {4, -5}, {13, -7}, {14, -2147483648}}},
                        {{{12, 2}, {4, 2147483647}, {13, 65535}, {14, 0}}}});
    tv.giveProgram(0);
    tv.giveProgram(4294967295U);
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes +
                                       program("0xffffffffffffffff") + kTitle +
                                       "\tfreq:-5 -> -7--2147483648: title size: 0\n" + kNext +
                                       program("0x0000000000000002") + kTitle +
                                       "\tfreq:2147483647 -> 65535-0: title size: 4294967295\n" +
                                       kNext + "\tno data in 0 programs\n" + freed(2) + kDone);
}

TEST_F(EpgDataFeeding, CountsAProgrammeWithoutATitleAsNoData) {
    tv.giveServiceList({{{{12, 1}, {4, 111}, {13, 5}, {14, 2}}}});
    tv.giveProgram(std::nullopt);
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes +
                                       program("0x0000000000000001") + kTitle + kNext +
                                       "\tno data in 1 programs\n" + freed(1) + kDone);
}

TEST_F(EpgDataFeeding, GivesEachProgrammeAFreshBuffer) {
    tv.giveServiceList(
        {{{{12, 1}, {4, 1}, {13, 1}, {14, 1}}}, {{{12, 2}, {4, 2}, {13, 2}, {14, 2}}}});
    tv.giveProgram(255);
    tv.giveProgram(3);
    EXPECT_EQ(visit("18", "1 99"),
              kCreated + cmd("1") + kAskedForProgrammes + program("0x0000000000000001") + kTitle +
                  "\tfreq:1 -> 1-1: title size: 255\n" + kNext + program("0x0000000000000002") +
                  kTitle + "\tfreq:2 -> 2-2: title size: 3\n" + kNext +
                  "\tno data in 0 programs\n" + freed(2) + kDone);
}

TEST_F(EpgDataFeeding, TellsMinusOneForFieldsThatAreMissing) {
    tv.giveServiceList({{{{12, 1}}}});
    tv.giveProgram(9);
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes +
                                       program("0x0000000000000001") + kTitle + missingTag("  4") +
                                       missingTag(" 13") + missingTag(" 14") +
                                       "\tfreq:-1 -> -1--1: title size: 9\n" + kNext +
                                       "\tno data in 0 programs\n" + freed(1) + kDone);
}

TEST_F(EpgDataFeeding, TellsMinusOneForFieldsWithoutAValue) {
    tv.giveServiceList({{{{12, 1}, {4, std::nullopt}, {13, 5}, {14, std::nullopt}}}});
    tv.giveProgram(9);
    EXPECT_EQ(visit("18", "1 99"),
              kCreated + cmd("1") + kAskedForProgrammes + program("0x0000000000000001") + kTitle +
                  "{TCApiPrintMessage(tag 4 has do data)}" + missingTag("  4") +
                  "{TCApiPrintMessage(tag 14 has do data)}" + missingTag(" 14") +
                  "\tfreq:-1 -> 5--1: title size: 9\n" + kNext + "\tno data in 0 programs\n" +
                  freed(1) + kDone);
}

TEST_F(EpgDataFeeding, AsksForTheProgrammeOfTheInvalidIdOfARecordWithoutFields) {
    tv.giveServiceList({{{}, false}});
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes + missingTag(" 12") +
                                       program("0xffffffffffffffff") + kNext +
                                       "\tno data in 1 programs\n" + freed(1) + kDone);
}

TEST_F(EpgDataFeeding, AsksForProgrammesWhateverTheListsAnswer) {
    tv.giveServiceList({{{{12, 1}}}});
    tv.answer("ServiceNavigation.GetServiceList", {-1});
    EXPECT_EQ(visit("18", "1 99"), kCreated + cmd("1") + kAskedForProgrammes +
                                       program("0x0000000000000001") + kNext +
                                       "\tno data in 1 programs\n" + freed(1) + kDone);
}

// The counter has 16 bits.
TEST_F(EpgDataFeeding, CountsProgrammesFromTheBeginningAfter65535) {
    constexpr int kChannels = 65537;
    tv.giveServiceList(
        std::vector<FakeRecord>(kChannels, {{{12, 1}, {4, 2}, {13, 3}, {14, 4}}, true}));
    for (int i = 0; i < kChannels; ++i)
        tv.giveProgram(5);
    console.type("1 99").run([this] { menus.m_EpgDataFeeding(); });
    const std::string line = "\tfreq:2 -> 3-4: title size: 5\n";
    const std::string end = line + "\tno data in 65536 programs\n" + kMenu + "cmd> ";
    const std::string transcript = console.transcript();
    EXPECT_TRUE(transcript.ends_with(end)) << transcript.substr(transcript.size() - 600);
    EXPECT_EQ(transcript.size(), kMenu.size() + 5 + (kChannels - 1) * line.size() + end.size());
}

TEST_F(EpgDataFeeding, AsksWhetherTuneAroundIsNeeded) {
    tv.giveTvMode(2, 1);
    tv.giveServiceList({{{{12, 1}}}, {{{12, -1}}}});
    tv.answer("ScanControl.IsTuneAroundNeeded", {-6});
    EXPECT_EQ(visit("18", "2 99"),
              kCreated + cmd("2") + askedForServices("{2, 1}") + freed(2) +
                  "{ScanControl.IsTuneAroundNeeded([0x0000000000000001:5, "
                  "0xffffffffffffffff:5])}\tcalled IsTuneAroundNeeded, ret: -6\n" +
                  kDone);
}

TEST_F(EpgDataFeeding, AsksWithAFreshListEachTime) {
    tv.giveServiceList({{{{12, 1}}}});
    const std::string once = cmd("2") + askedForServices() + freed(1) +
                             "{ScanControl.IsTuneAroundNeeded([0x0000000000000001:5])}"
                             "\tcalled IsTuneAroundNeeded, ret: 1\n";
    EXPECT_EQ(visit("18", "2 2 99"), kCreated + once + kMenu + once + kDone);
}

TEST_F(EpgDataFeeding, AsksNothingWhenEveryChannelIsVirtual) {
    EXPECT_EQ(visit("18", "2 99"),
              kCreated + cmd("2") + askedForServices() + "services.empty()!\n" + freed(0) + kDone);
}

TEST_F(EpgDataFeeding, AsksNothingWithoutATvMode) {
    tv.answer("ServiceNavigation.GetTvMode", {-1});
    EXPECT_EQ(visit("18", "2 99"),
              kCreated + cmd("2") + "{ServiceNavigation.GetTvMode({-1, -1})}GetTvMode failed!\n" +
                  kDone);
}

TEST_F(EpgDataFeeding, StartsTuneAround) {
    tv.giveServiceList({{{{12, 1}}}, {{{12, 2}}}});
    EXPECT_EQ(visit("18", "3 99"),
              kCreated + cmd("3") + subscribed("81") + subscribed("193") + subscribed("194") +
                  askedForServices() + freed(2) +
                  "{ScanControl.StartTuneAround([0x0000000000000001:5, "
                  "0x0000000000000002:5], \"DebugMenu\")}\tcalled StartTuneAround, ret: 1\n" +
                  kDone);
}

TEST_F(EpgDataFeeding, KeepsItsSubscriptionsWhenThereIsNothingToTuneTo) {
    EXPECT_EQ(visit("18", "3 99"), kCreated + cmd("3") + subscribed("81") + subscribed("193") +
                                       subscribed("194") + askedForServices() +
                                       "services.empty()!\n" + freed(0) + kDone);
}

TEST_F(EpgDataFeeding, SubscribesAgainAtEachStart) {
    tv.giveServiceList({{{{12, 1}}}});
    tv.answer("ScanControl.StartTuneAround", {0, -2});
    tv.answer("SignalSubscriber.Subscribe", {-1, -1, -1});
    const std::string started =
        cmd("3") + subscribed("81") + subscribed("193") + subscribed("194") + askedForServices() +
        freed(1) + "{ScanControl.StartTuneAround([0x0000000000000001:5], \"DebugMenu\")}";
    EXPECT_EQ(visit("18", "3 3 99"), kCreated + started + "\tcalled StartTuneAround, ret: 0\n" +
                                         kMenu + started + "\tcalled StartTuneAround, ret: -2\n" +
                                         kDone);
}

// The manual scan's stop is meant.
TEST_F(EpgDataFeeding, StopsTuneAround) {
    EXPECT_EQ(visit("18", "4 99"),
              kCreated + cmd("4") +
                  "{ScanControl.StopManualScan()}\tcalled StopManualScan, ret: 1\n" +
                  unsubscribed("81") + unsubscribed("193") + unsubscribed("194") + kDone);
}

TEST_F(EpgDataFeeding, UnsubscribesAlsoWhenTheStopIsRefused) {
    tv.answer("ScanControl.StopManualScan", {-9});
    tv.answer("SignalSubscriber.Unsubscribe", {-1});
    EXPECT_EQ(visit("18", "4 99"),
              kCreated + cmd("4") +
                  "{ScanControl.StopManualScan()}\tcalled StopManualScan, ret: -9\n" +
                  unsubscribed("81") + unsubscribed("193") + unsubscribed("194") + kDone);
}

TEST_F(EpgDataFeeding, AsksWhetherABarkerScanIsAvailable) {
    tv.giveTvMode(2, 1);
    tv.answer("ScanControl.IsBarkerChannelScanAvailable", {0});
    EXPECT_EQ(visit("18", "5 99"), kCreated + cmd("5") +
                                       "{ScanControl.IsBarkerChannelScanAvailable({-1, -1})}"
                                       "\tcalled IsBarkerChannelScanAvailable, ret: 0\n" +
                                       kDone);
}

TEST_F(EpgDataFeeding, StartsABarkerScan) {
    tv.answer("ScanControl.StartBarkerChannelScan", {7});
    EXPECT_EQ(visit("18", "6 99"), kCreated + cmd("6") + subscribed("81") + subscribed("195") +
                                       "{ScanControl.StartBarkerChannelScan(\"\", {-1, -1})}"
                                       "\tcalled StartBarkerChannelScan, ret: 7\n" +
                                       kDone);
}

TEST_F(EpgDataFeeding, StopsABarkerScan) {
    tv.answer("ScanControl.StopBarkerChannelScan", {-1});
    EXPECT_EQ(visit("18", "7 99"), kCreated + cmd("7") +
                                       "{ScanControl.StopBarkerChannelScan()}"
                                       "\tcalled StopBarkerChannelScan, ret: -1\n" +
                                       unsubscribed("81") + unsubscribed("195") + kDone);
}

// Signals that the stop brings about still arrive, so that it waits before it unsubscribes.
TEST_F(EpgDataFeeding, WaitsAMillisecondAfterStoppingABarkerScan) {
    std::chrono::steady_clock::time_point stopped;
    std::chrono::steady_clock::time_point unsubscribing;
    tv.runWithin("ScanControl.StopBarkerChannelScan",
                 [&] { stopped = std::chrono::steady_clock::now(); });
    tv.runWithin("SignalSubscriber.Unsubscribe",
                 [&] { unsubscribing = std::chrono::steady_clock::now(); });
    visit("18", "7 99");
    EXPECT_GE(unsubscribing - stopped, std::chrono::milliseconds(1));
}

TEST_F(EpgDataFeeding, SaysThatItDoesNotSupportOtherNumbers) {
    console.type("18");
    std::string expected =
        "{CreateScanControl()}{CreateServiceGuide()}{CreateServiceNavigation(1, 0)}";
    for (const std::string word :
         {"8", "0", "98", "100", "-2", "-99", "0x1", "2147483647", "-2147483648", "257"}) {
        console.type(word);
        expected += kMenu + cmd(word) + "unsupported command: -1\n";
    }
    console.type("99");
    EXPECT_EQ(visitTyped("18"), expected + kDone);
}

TEST_F(EpgDataFeeding, ShowsItsMenuAgainForWordsThatAreNoNumbers) {
    console.type("18");
    std::string expected =
        "{CreateScanControl()}{CreateServiceGuide()}{CreateServiceNavigation(1, 0)}";
    for (const std::string& word : kNoNumbers) {
        console.type(word);
        expected += kMenu + cmd(word);
    }
    console.type("99");
    EXPECT_EQ(visitTyped("18"), expected + kDone);
}

TEST_F(EpgDataFeeding, TakesEverySpellingOfItsCommands) {
    console.type("18");
    std::string expected =
        "{CreateScanControl()}{CreateServiceGuide()}{CreateServiceNavigation(1, 0)}";
    for (const std::string& word : spellingsOf("5")) {
        console.type(word);
        expected += kMenu + cmd(word) +
                    "{ScanControl.IsBarkerChannelScanAvailable({-1, -1})}"
                    "\tcalled IsBarkerChannelScanAvailable, ret: 1\n";
    }
    console.type("+099x");
    EXPECT_EQ(visitTyped("18"), expected + kMenu + cmd("+099x") + kDestroyed);
}

TEST_F(EpgDataFeeding, DoesNotUnsubscribeOnLeaving) {
    EXPECT_EQ(visit("18", "6 99"), kCreated + cmd("6") + subscribed("81") + subscribed("195") +
                                       "{ScanControl.StartBarkerChannelScan(\"\", {-1, -1})}"
                                       "\tcalled StartBarkerChannelScan, ret: 1\n" +
                                       kDone);
}

TEST_F(EpgDataFeeding, SaysThatTheScanControlCouldNotBeCreated) {
    tv.answerCreation("CreateScanControl", -1, false);
    EXPECT_EQ(visit("18", ""), "{CreateScanControl()}CreateScanControl failed\n");
}

// The scan control is kept, and so are both objects in the next case.
TEST_F(EpgDataFeeding, SaysThatTheGuideCouldNotBeCreated) {
    tv.answerCreation("CreateServiceGuide", -1, false);
    EXPECT_EQ(visit("18", ""),
              "{CreateScanControl()}{CreateServiceGuide()}CreateServiceGuide failed\n");
    kept = {"ScanControl"};
}

TEST_F(EpgDataFeeding, SaysThatTheNavigationCouldNotBeCreated) {
    tv.answerCreation("CreateServiceNavigation", 1, false);
    EXPECT_EQ(visit("18", ""), "{CreateScanControl()}{CreateServiceGuide()}"
                               "{CreateServiceNavigation(1, 0)}CreateServiceNavigation failed\n");
    kept = {"ScanControl", "ServiceGuide"};
}

TEST_F(EpgDataFeeding, AnswersWhetherItRan) {
    bool ran = false;
    console.type("99").run([&] { ran = menus.m_EpgDataFeeding(); });
    EXPECT_TRUE(ran);
    for (const std::string factory :
         {"CreateScanControl", "CreateServiceGuide", "CreateServiceNavigation"}) {
        tv.answerCreation(factory, -1, false);
        console.run([&] { ran = menus.m_EpgDataFeeding(); });
        EXPECT_FALSE(ran) << factory;
        ran = true;
    }
    kept = {"ScanControl#2", "ScanControl#3", "ServiceGuide#2"};
}

TEST_F(EpgDataFeeding, ShowsSignalsBetweenItsMenus) {
    tv.runWithin("ScanControl.StopBarkerChannelScan",
                 [] { MainLoopWatch::deliver(SIGNAL_BARKER_CHANNEL_TUNE, PROFILE_MAIN, 0, {1}); });
    EXPECT_EQ(visit("18", "7 99"),
              kCreated + cmd("7") +
                  "{ScanControl.StopBarkerChannelScan()}"
                  "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:true\n"
                  "\tcalled StopBarkerChannelScan, ret: 1\n" +
                  unsubscribed("81") + unsubscribed("195") + kDone);
}

TEST_F(EpgDataFeeding, RepeatsItsMenuAtTheEndOfInput) {
    console.type("18").endInput(2).type("99");
    EXPECT_EQ(visitTyped("18"), kCreated + "cmd> {typed <end>}" + kMenu + "cmd> " + kMenu +
                                    "cmd> {typed 99}" + kDestroyed);
}
