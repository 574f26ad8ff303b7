#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include <zarn/DebugMenu.h>

#include "DriverTest.h"
#include "FakeCore.h"
#include "FakeDevice.h"
#include "FakeFiles.h"
#include "QuarleDebugMenu.h"
#include "Screens.h"

using namespace pieces;
using screens::providerListOff;
using screens::providerListOn;
using screens::providerPrompt;

namespace {

const std::string kSwitchOn = "{fopen(quarle-provider/data/FCdebug.conf, w)}{fclose}"
                              "{startdlogtagbydefault(quarle-daemon)}"
                              "{startdlogtagbydefault(quarle-provider)}";
const std::string kSwitchOnUnwritten = "{fopen(quarle-provider/data/FCdebug.conf, w)}"
                                       "{startdlogtagbydefault(quarle-daemon)}"
                                       "{startdlogtagbydefault(quarle-provider)}";
const std::string kSwitchOff = "{stopdlogtagbydefault(quarle-daemon)}"
                               "{stopdlogtagbydefault(quarle-provider)}"
                               "{remove(quarle-provider/data/FCdebug.conf)}";

const std::string kFlush = "{flush}";

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

} // namespace

using ProviderLogMenu = DriverTest;

TEST_F(ProviderLogMenu, ListShowsOffWithoutTheMarkerFile) {
    EXPECT_EQ(run("4 99 99"), entered + menu + typed("4") + providerListOff + kFlush + typed("99") +
                                  menu + typed("99"));
}

TEST_F(ProviderLogMenu, ListShowsOnWithTheMarkerFile) {
    makeMarker();
    EXPECT_EQ(run("4 99 99"), entered + menu + typed("4") + providerListOn + kFlush + typed("99") +
                                  menu + typed("99"));
}

TEST_F(ProviderLogMenu, MarkerFileIsReadWheneverTheConsoleIsEntered) {
    makeMarker();
    run("99");
    EXPECT_TRUE(QuarleLogonOff);
    std::filesystem::remove(marker());
    run("99");
    EXPECT_FALSE(QuarleLogonOff);
}

TEST_F(ProviderLogMenu, MarkerFileIsNotReadAgainWhenTheMenuIsChosen) {
    // The sibling library stands for somebody who makes the file while the console is open.
    FakeCore::setOpenLibrary([this] {
        makeMarker();
        return true;
    });
    run("6 4 99 99");
    EXPECT_TRUE(markerExists());
    EXPECT_EQ(console.transcript(), "DebugUtil\n" + screens::processMenu + "\ncmd> " +
                                        screens::processMenu + "\ncmd> " + providerListOff +
                                        screens::processMenu + "\ncmd> ");
}

TEST_F(ProviderLogMenu, PathComesFromTheResolversDataDirectory) {
    console.run(CheckQuarleLogOnOff);
    EXPECT_EQ(console.whole(),
              "{TCPathResolver::GetAbsolutePath(6, quarle-provider/data/FCdebug.conf)}"
              "{stat(quarle-provider/data/FCdebug.conf)}");
}

TEST_F(ProviderLogMenu, WordThatIsNoNumberShowsTheListAgain) {
    EXPECT_EQ(run("4 abc -1 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                         typed("abc") + providerListOff + kFlush + typed("-1") +
                                         providerListOff + kFlush + typed("99") + menu +
                                         typed("99"));
}

TEST_F(ProviderLogMenu, RowThatIsNotThereGivesAnEmptyScreen) {
    EXPECT_EQ(run("4 5 1 4294967295 99 99"), entered + menu + typed("4") + providerListOff +
                                                 kFlush + typed("5") + kFlush + typed("1") +
                                                 kFlush + typed("4294967295") + kFlush +
                                                 typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, ListComesBackAfterAnEmptyScreen) {
    EXPECT_EQ(run("4 5 abc 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                        typed("5") + kFlush + typed("abc") + providerListOff +
                                        kFlush + typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, LowThirtyTwoBitsOfTheRowCount) {
    EXPECT_EQ(run("4 4294967296 0 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                               typed("4294967296") + providerPrompt + kFlush +
                                               typed("0") + kSwitchOff + providerListOff + kFlush +
                                               typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, Row0AsksForOnOrOff) {
    EXPECT_EQ(run("4 0 0 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                      typed("0") + providerPrompt + kFlush + typed("0") +
                                      kSwitchOff + providerListOff + kFlush + typed("99") + menu +
                                      typed("99"));
}

TEST_F(ProviderLogMenu, OnWritesTheFileAndThenStartsBothTags) {
    EXPECT_EQ(run("4 0 1 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                      typed("0") + providerPrompt + kFlush + typed("1") +
                                      kSwitchOn + providerListOn + kFlush + typed("99") + menu +
                                      typed("99"));
    EXPECT_TRUE(markerExists());
    EXPECT_EQ(contentOf(marker()), "");
}

TEST_F(ProviderLogMenu, OffStopsBothTagsAndThenRemovesTheFile) {
    makeMarker();
    EXPECT_EQ(run("4 0 0 99 99"), entered + menu + typed("4") + providerListOn + kFlush +
                                      typed("0") + providerPrompt + kFlush + typed("0") +
                                      kSwitchOff + providerListOff + kFlush + typed("99") + menu +
                                      typed("99"));
    EXPECT_FALSE(markerExists());
}

TEST_F(ProviderLogMenu, OnTruncatesAFileThatIsThere) {
    makeMarker("something");
    run("4 0 1 99 99");
    EXPECT_TRUE(markerExists());
    EXPECT_EQ(contentOf(marker()), "");
}

TEST_F(ProviderLogMenu, StateSurvivesTheConsole) {
    run("4 0 1 99 99");
    QuarleLogonOff = false;
    Console again;
    again.type("4 99 99").run(zarn_startmaindebug);
    EXPECT_EQ(again.transcript(), "DebugUtil\n" + screens::processMenu + "\ncmd> " +
                                      providerListOn + screens::processMenu + "\ncmd> ");
}

TEST_F(ProviderLogMenu, AnyNumberButZeroMeansOn) {
    for (const char* word :
         {"1", "2", "-1", "+7", "1x", "099", "4294967297", "9223372036854775808"}) {
        currentMenu = 1;
        QuarleLogonOff = false;
        EXPECT_EQ(ParserQuarleCommand(word), providerListOn) << word;
        EXPECT_TRUE(QuarleLogonOff) << word;
        EXPECT_TRUE(markerExists()) << word;
        std::filesystem::remove(marker());
    }
}

TEST_F(ProviderLogMenu, WordsWithoutANumberAndZeroMeanOff) {
    for (const char* word :
         {"yes", "0", "off", "x", "on", "x1", "00", "-0", "4294967296", "-9223372036854775809"}) {
        currentMenu = 1;
        QuarleLogonOff = true;
        makeMarker();
        EXPECT_EQ(ParserQuarleCommand(word), providerListOff) << word;
        EXPECT_FALSE(QuarleLogonOff) << word;
        EXPECT_FALSE(markerExists()) << word;
    }
}

TEST_F(ProviderLogMenu, YesAtThePromptCountsAsOff) {
    makeMarker();
    EXPECT_EQ(run("4 0 yes 99 99"), entered + menu + typed("4") + providerListOn + kFlush +
                                        typed("0") + providerPrompt + kFlush + typed("yes") +
                                        kSwitchOff + providerListOff + kFlush + typed("99") + menu +
                                        typed("99"));
}

TEST_F(ProviderLogMenu, NinetyNineAtThePromptSwitchesOnAndLeaves) {
    EXPECT_EQ(run("4 0 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                    typed("0") + providerPrompt + kFlush + typed("99") + kSwitchOn +
                                    menu + typed("99"));
    EXPECT_TRUE(markerExists());
    EXPECT_TRUE(QuarleLogonOff);
}

TEST_F(ProviderLogMenu, Text099AtThePromptSwitchesOnAndStays) {
    EXPECT_EQ(run("4 0 099 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                        typed("0") + providerPrompt + kFlush + typed("099") +
                                        kSwitchOn + providerListOn + kFlush + typed("99") + menu +
                                        typed("99"));
}

TEST_F(ProviderLogMenu, ChosenAgainBeginsWithTheList) {
    EXPECT_EQ(run("4 0 99 4 5 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                           typed("0") + providerPrompt + kFlush + typed("99") +
                                           kSwitchOn + menu + typed("4") + providerListOn + kFlush +
                                           typed("5") + kFlush + typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, OnAndOffAlternate) {
    EXPECT_EQ(run("4 0 1 0 0 0 1 99 99"),
              entered + menu + typed("4") + providerListOff + kFlush + typed("0") + providerPrompt +
                  kFlush + typed("1") + kSwitchOn + providerListOn + kFlush + typed("0") +
                  providerPrompt + kFlush + typed("0") + kSwitchOff + providerListOff + kFlush +
                  typed("0") + providerPrompt + kFlush + typed("1") + kSwitchOn + providerListOn +
                  kFlush + typed("99") + menu + typed("99"));
    EXPECT_TRUE(markerExists());
}

TEST_F(ProviderLogMenu, FileThatCannotBeWrittenIsIgnored) {
    std::filesystem::remove_all(std::filesystem::path(marker()).parent_path());
    EXPECT_EQ(run("4 0 1 99 99"), entered + menu + typed("4") + providerListOff + kFlush +
                                      typed("0") + providerPrompt + kFlush + typed("1") +
                                      kSwitchOnUnwritten + providerListOn + kFlush + typed("99") +
                                      menu + typed("99"));
    EXPECT_FALSE(markerExists());
}

TEST_F(ProviderLogMenu, DirectoryInTheFilesPlaceMeansOnAndIsNoHarm) {
    std::filesystem::create_directories(marker() + "/occupied");
    EXPECT_EQ(run("4 0 1 0 0 99 99"),
              entered + menu + typed("4") + providerListOn + kFlush + typed("0") + providerPrompt +
                  kFlush + typed("1") + kSwitchOnUnwritten + providerListOn + kFlush + typed("0") +
                  providerPrompt + kFlush + typed("0") + kSwitchOff + providerListOff + kFlush +
                  typed("99") + menu + typed("99"));
    EXPECT_TRUE(std::filesystem::is_directory(marker() + "/occupied"));
    run("99");
    EXPECT_TRUE(QuarleLogonOff) << "it is still there";
}

TEST_F(ProviderLogMenu, ReadOnlyFileSystemIsIgnoredInBothDirections) {
    makeMarker("kept");
    FakeFiles::mountReadOnly();
    EXPECT_EQ(run("4 0 1 0 0 99 99"),
              entered + menu + typed("4") + providerListOn + kFlush + typed("0") + providerPrompt +
                  kFlush + typed("1") + kSwitchOnUnwritten + providerListOn + kFlush + typed("0") +
                  providerPrompt + kFlush + typed("0") + kSwitchOff + providerListOff + kFlush +
                  typed("99") + menu + typed("99"));
    EXPECT_EQ(contentOf(marker()), "kept");
}

TEST_F(ProviderLogMenu, ResultsOfTheTagSwitchesAreIgnored) {
    FakeDevice::setLogTagResult(-1);
    EXPECT_EQ(run("4 0 1 0 0 99 99"),
              entered + menu + typed("4") + providerListOff + kFlush + typed("0") + providerPrompt +
                  kFlush + typed("1") + kSwitchOn + providerListOn + kFlush + typed("0") +
                  providerPrompt + kFlush + typed("0") + kSwitchOff + providerListOff + kFlush +
                  typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, EachScreenRepeatsAtTheEndOfInput) {
    console.type("4").endInput(2).type("0").endInput(2, providerPrompt).type("0 5");
    console.endInput(3, "").type("99 99");
    EXPECT_EQ(run(), entered + menu + typed("4") + providerListOff + kFlush + typed("<end>") +
                         providerListOff + kFlush + providerListOff + kFlush + typed("0") +
                         providerPrompt + kFlush + typed("<end>") + providerPrompt + kFlush +
                         providerPrompt + kFlush + typed("0") + kSwitchOff + providerListOff +
                         kFlush + typed("5") + kFlush + typed("<end>") + kFlush + kFlush + kFlush +
                         typed("99") + menu + typed("99"));
}

TEST_F(ProviderLogMenu, BuildingTheListResetsTheScreen) {
    currentMenu = 1;
    QuarleLogonOff = true;
    EXPECT_EQ(GetQuarleDebugMenu(), providerListOn);
    EXPECT_EQ(currentMenu, 0);
    QuarleLogonOff = false;
    EXPECT_EQ(GetQuarleDebugMenu(), providerListOff);
}

TEST_F(ProviderLogMenu, Row0GoesToThePromptScreen) {
    currentMenu = 0;
    EXPECT_EQ(HandlingQuarleMenu("0"), providerPrompt);
    EXPECT_EQ(currentMenu, 1);
    ParserQuarleCommand("0");
    EXPECT_EQ(currentMenu, 0);
}

TEST_F(ProviderLogMenu, EmptyScreenStaysOnTheList) {
    currentMenu = 0;
    EXPECT_EQ(HandlingQuarleMenu("5"), "");
    EXPECT_EQ(currentMenu, 0);
    EXPECT_EQ(HandlingQuarleMenu("abc"), providerListOff);
    EXPECT_EQ(currentMenu, 0);
}

TEST_F(ProviderLogMenu, UnknownScreenAnswersNothing) {
    for (const int screen : {2, -1, 99}) {
        currentMenu = screen;
        EXPECT_EQ(ParserQuarleCommand("0"), "");
        EXPECT_EQ(ParserQuarleCommand("abc"), "");
        EXPECT_EQ(currentMenu, screen);
    }
    EXPECT_TRUE(console.calls().empty());
    currentMenu = 0;
}
