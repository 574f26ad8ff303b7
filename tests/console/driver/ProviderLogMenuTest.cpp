#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <zarn/DebugMenu.h>

#include "CoreWatch.h"
#include "DriverTest.h"
#include "FakeDevice.h"
#include "FakeFiles.h"
#include "QuarleDebugMenu.h"

namespace {

// Switching on where the marker file cannot be written.
const std::string kSwitchedOnUnwritten = "{fopen(marker, w)}{startdlogtagbydefault(quarle-daemon)}"
                                         "{startdlogtagbydefault(quarle-provider)}";

std::string ContentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

} // namespace

using ProviderLogMenu = DriverTest;

TEST_F(ProviderLogMenu, ListShowsWhetherTheMarkerFileIsThereWheneverTheConsoleIsEntered) {
    EXPECT_EQ(Run("4 99 99"), "{entered}{menu}<4>{list off}<99>{menu}<99>");
    MakeMarker();
    Timeline::Now().Clear();
    EXPECT_EQ(Run("4 99 99"), "{entered}{menu}<4>{list on}<99>{menu}<99>");
    EXPECT_TRUE(QuarleLogonOff);
    std::filesystem::remove(GetMarker());
    Run("99");
    EXPECT_FALSE(QuarleLogonOff);
}

TEST_F(ProviderLogMenu, MarkerFileIsNotReadAgainWhenTheMenuIsChosen) {
    // The sibling library stands for somebody who makes the file while the console is open.
    CoreWatch::SetOpenLibrary([this] {
        MakeMarker();
        return true;
    });
    EXPECT_TRUE(Run("6 4 99 99").ends_with("{menu}<4>{list off}<99>{menu}<99>"));
    EXPECT_TRUE(MarkerExists());
}

TEST_F(ProviderLogMenu, PathComesFromTheResolversDataDirectory) {
    console.Run(CheckQuarleLogOnOff);
    EXPECT_EQ(console.Whole(), "{TCPathResolver::GetAbsolutePath(6, quarle-provider/data/FCdebug.conf)}"
                               "{stat(quarle-provider/data/FCdebug.conf)}");
}

TEST_F(ProviderLogMenu, WordThatIsNoNumberShowsTheListAgain) {
    EXPECT_EQ(Run("4 abc -1 99 99"), "{entered}{menu}<4>{list off}<abc>{list off}<-1>{list off}<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, RowThatIsNotThereGivesAnEmptyScreen) {
    EXPECT_EQ(Run("4 5 1 4294967295 abc 99 99"),
              "{entered}{menu}<4>{list off}<5>{flush}<1>{flush}<4294967295>{flush}<abc>{list off}"
              "<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, LowThirtyTwoBitsOfTheRowCount) {
    EXPECT_EQ(Run("4 4294967296 0 99 99"), "{entered}{menu}<4>{list off}<4294967296>{on or off?}"
                                           "<0>{switched off}{list off}<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, OnTruncatesTheFileAndThenStartsBothTags) {
    MakeMarker("something");
    EXPECT_EQ(Run("4 0 1 99 99"), "{entered}{menu}<4>{list on}<0>{on or off?}"
                                  "<1>{switched on}{list on}<99>{menu}<99>");
    EXPECT_TRUE(MarkerExists());
    EXPECT_EQ(ContentOf(GetMarker()), "");
}

TEST_F(ProviderLogMenu, OffStopsBothTagsAndThenRemovesTheFile) {
    MakeMarker();
    EXPECT_EQ(Run("4 0 0 99 99"), "{entered}{menu}<4>{list on}<0>{on or off?}"
                                  "<0>{switched off}{list off}<99>{menu}<99>");
    EXPECT_FALSE(MarkerExists());
}

TEST_F(ProviderLogMenu, StateSurvivesTheConsole) {
    Run("4 0 1 99 99");
    QuarleLogonOff = false;
    Timeline::Now().Clear();
    EXPECT_EQ(Run("4 99 99"), "{entered}{menu}<4>{list on}<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, AnyNumberButZeroMeansOn) {
    for (const char* word : {"1", "2", "-1", "+7", "1x", "099", "4294967297", "9223372036854775808"}) {
        currentMenu = 1;
        QuarleLogonOff = false;
        EXPECT_EQ(ParserQuarleCommand(word), screens::ProviderList("ON ")) << word;
        EXPECT_TRUE(QuarleLogonOff) << word;
        EXPECT_TRUE(MarkerExists()) << word;
        std::filesystem::remove(GetMarker());
    }
}

TEST_F(ProviderLogMenu, WordsWithoutANumberAndZeroMeanOff) {
    for (const char* word : {"yes", "0", "off", "x", "on", "x1", "00", "-0", "4294967296", "-9223372036854775809"}) {
        currentMenu = 1;
        QuarleLogonOff = true;
        MakeMarker();
        EXPECT_EQ(ParserQuarleCommand(word), screens::ProviderList("OFF")) << word;
        EXPECT_FALSE(QuarleLogonOff) << word;
        EXPECT_FALSE(MarkerExists()) << word;
    }
}

TEST_F(ProviderLogMenu, NinetyNineAtThePromptSwitchesOnAndLeaves) {
    EXPECT_EQ(Run("4 0 99 4 5 99 99"), "{entered}{menu}<4>{list off}<0>{on or off?}"
                                       "<99>{switched on}{menu}<4>{list on}<5>{flush}"
                                       "<99>{menu}<99>")
        << "chosen again, it begins with the list";
    EXPECT_TRUE(MarkerExists());
    EXPECT_TRUE(QuarleLogonOff);
}

TEST_F(ProviderLogMenu, Text099AtThePromptSwitchesOnAndStays) {
    EXPECT_EQ(Run("4 0 099 99 99"), "{entered}{menu}<4>{list off}<0>{on or off?}"
                                    "<099>{switched on}{list on}<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, OnAndOffAlternate) {
    EXPECT_EQ(Run("4 0 1 0 yes 0 1 99 99"),
              "{entered}{menu}<4>{list off}<0>{on or off?}<1>{switched on}{list on}"
              "<0>{on or off?}<yes>{switched off}{list off}<0>{on or off?}<1>{switched on}{list on}"
              "<99>{menu}<99>");
    EXPECT_TRUE(MarkerExists());
}

TEST_F(ProviderLogMenu, FileThatCannotBeWrittenIsIgnored) {
    std::filesystem::remove_all(std::filesystem::path(GetMarker()).parent_path());
    EXPECT_EQ(Run("4 0 1 99 99"),
              "{entered}{menu}<4>{list off}<0>{on or off?}<1>" + kSwitchedOnUnwritten + "{list on}<99>{menu}<99>");
    EXPECT_FALSE(MarkerExists());
}

TEST_F(ProviderLogMenu, DirectoryInTheFilesPlaceMeansOnAndIsNoHarm) {
    std::filesystem::create_directories(GetMarker() + "/occupied");
    EXPECT_EQ(Run("4 0 1 0 0 99 99"), "{entered}{menu}<4>{list on}<0>{on or off?}<1>" + kSwitchedOnUnwritten +
                                          "{list on}<0>{on or off?}<0>{switched off}{list off}<99>{menu}<99>");
    EXPECT_TRUE(std::filesystem::is_directory(GetMarker() + "/occupied"));
    Run("99");
    EXPECT_TRUE(QuarleLogonOff) << "it is still there";
}

TEST_F(ProviderLogMenu, ReadOnlyFileSystemIsIgnoredInBothDirections) {
    MakeMarker("kept");
    FakeFiles::MountReadOnly();
    EXPECT_EQ(Run("4 0 1 0 0 99 99"), "{entered}{menu}<4>{list on}<0>{on or off?}<1>" + kSwitchedOnUnwritten +
                                          "{list on}<0>{on or off?}<0>{switched off}{list off}<99>{menu}<99>");
    EXPECT_EQ(ContentOf(GetMarker()), "kept");
}

TEST_F(ProviderLogMenu, ResultsOfTheTagSwitchesAreIgnored) {
    FakeDevice::SetLogTagResult(-1);
    EXPECT_EQ(Run("4 0 1 0 0 99 99"), "{entered}{menu}<4>{list off}<0>{on or off?}<1>{switched on}{list on}"
                                      "<0>{on or off?}<0>{switched off}{list off}<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, EachScreenRepeatsAtTheEndOfInput) {
    console.Type("4").EndInput(2).Type("0").EndInput(2, screens::kProviderPrompt).Type("0 5");
    console.EndInput(3, "").Type("99 99");
    EXPECT_EQ(Run(), "{entered}{menu}<4>{list off}<end of input>{list off}{list off}"
                     "<0>{on or off?}<end of input>{on or off?}{on or off?}"
                     "<0>{switched off}{list off}<5>{flush}<end of input>{flush}{flush}{flush}"
                     "<99>{menu}<99>");
}

TEST_F(ProviderLogMenu, EachFunctionLeavesTheScreenThatItAnswers) {
    currentMenu = 1;
    QuarleLogonOff = true;
    EXPECT_EQ(GetQuarleDebugMenu(), screens::ProviderList("ON "));
    EXPECT_EQ(currentMenu, 0);
    QuarleLogonOff = false;
    EXPECT_EQ(GetQuarleDebugMenu(), screens::ProviderList("OFF"));
    EXPECT_EQ(HandlingQuarleMenu("5"), "");
    EXPECT_EQ(currentMenu, 0);
    EXPECT_EQ(HandlingQuarleMenu("abc"), screens::ProviderList("OFF"));
    EXPECT_EQ(currentMenu, 0);
    EXPECT_EQ(HandlingQuarleMenu("0"), screens::kProviderPrompt);
    EXPECT_EQ(currentMenu, 1);
    ParserQuarleCommand("0");
    EXPECT_EQ(currentMenu, 0);
}

TEST_F(ProviderLogMenu, UnknownScreenAnswersNothing) {
    for (const int screen : {2, -1, 99}) {
        currentMenu = screen;
        EXPECT_EQ(ParserQuarleCommand("0"), "");
        EXPECT_EQ(ParserQuarleCommand("abc"), "");
        EXPECT_EQ(currentMenu, screen);
    }
    EXPECT_TRUE(console.Calls().empty());
    currentMenu = 0;
}
