// What all menus of the test console have in common: how they read words, handle unknown ones, are
// printed, and behave at end of input.

#include <optional>

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

// How a menu takes a word.
struct Habits {
    Menu menu;
    // A command that the menu knows, the words after it, and what the whole brings.
    std::string command;
    std::string rest = {};
    std::string outcome;
    // What a word brings that is no number.
    std::string noNumber = {};
    // Numbers beside the commands, with words typed after each, and what they bring. Without an
    // outcome they leave.
    std::vector<std::string> others;
    std::string otherRest = {};
    std::optional<std::string> otherOutcome = "";
    // A word that is asked for before the menu, and its prompt.
    std::string input = {};
    std::string inputPrompt = {};
};

const std::string kSetTuner = "{CreateSourceControl(1, 0)}{SourceControl.SetSource(0, \"\")}{Destroy(SourceControl)}";

const Habits kMenus[] = {
    {.menu = kReferenceCount,
     .command = "1",
     .outcome = "{ReferenceCount.GetReferenceCount(-1)}Reference count value is: -1\n",
     .others = {"2", "10"}},
    {.menu = kMute,
     .command = "2",
     .rest = "0",
     .outcome = "Off:0 / On:1 <0>{AVControl.MuteAudio(0)}",
     .others = {"3"},
     .otherRest = "1",
     .otherOutcome = "Off:0 / On:1 <1>"},
    {.menu = kHdmiAnalysis,
     .command = "2",
     .outcome = "{SourceControl.StopHDMIAnalysis(15)}",
     .others = {"3", "+3x"},
     .otherOutcome = std::nullopt,
     .input = "3",
     .inputPrompt = " [HDMI 1~6] select num> "},
    {.menu = kDtvMode,
     .command = "8",
     .outcome = "{ServiceNavigation.SetDTVMode(3, false)}",
     .others = {"9", "10"},
     .otherOutcome = std::nullopt},
    {.menu = kSetSource,
     .command = "4",
     .outcome = "{CreateSourceControl(1, 0)}{SourceControl.SetSource(7, \"\")}{Destroy(SourceControl)}",
     .noNumber = kSetTuner,
     .others = {"8", "12", "258", "0x2"},
     .otherOutcome = kSetTuner},
    {.menu = kPreparationLogic,
     .command = "8",
     .outcome = "{PipelineUtility.CheckPendingState(1, false)}",
     .others = {"9", "10"},
     .otherOutcome = std::nullopt},
    {.menu = kSetTvMode,
     .command = "1",
     .rest = "5",
     .outcome = "major> <5>{CreateServiceNavigation(1, 0)}{CreateService()}" + InLineUp("0", "5") + MissingTag(" 12") +
                FindBroadcast("0") +
                "FindService failed{~ServiceData}{~CriteriaHelper}{Destroy(Service)}"
                "{Destroy(ServiceNavigation)}",
     .others = {"7", "65537"},
     .otherOutcome = std::nullopt},
    {.menu = kPreviewSource,
     .command = "2",
     .rest = "48",
     .outcome = "Enter ESource (TV=0, HDMI1=13)> <48>Invalid source 48. Valid values (0, 47)\n",
     .others = {"3"}},
    {.menu = kSignalTunePreparation,
     .command = "7",
     .outcome = "{PipelineUtility.CheckPendingState(0, false)}pending=0\n"
                "Succesfully called CheckPendingState, ret=1\n",
     .others = {"8", "42"}},
    {.menu = kEpgDataFeeding,
     .command = "5",
     .outcome = "{ScanControl.IsBarkerChannelScanAvailable({-1, -1})}"
                "\tcalled IsBarkerChannelScanAvailable, ret: 1\n",
     .others = {"8"},
     .otherOutcome = "unsupported command: -1\n"},
    {.menu = kZoomControl,
     .command = "10",
     .outcome = "{ZoomControl.GetConnectedZoomWindows([])}GetConnectedZoomWindows API ret[1\n"
                "Connected window ids = []\n",
     .others = {"11"},
     .otherOutcome = "Unsupported command!\n"},
    {.menu = kInvalidService,
     .command = "2",
     .outcome = "{SourceControl.SetSource(0, 0xffffffffffffffff, \"\")}",
     .others = {"3", "5"},
     .otherOutcome = "unsupported command: -1\n"},
};

class EachMenu : public TPMSScenario, public testing::WithParamInterface<Habits> {
protected:
    // Types one word to the menu's prompt, and `rest`; gives the dialogue that it must bring.
    std::string Step(const std::string& word, const std::string& rest, const std::string& outcome) {
        console.Type(habits.input).Type(word).Type(rest);
        const std::string asked = habits.input.empty() ? "" : habits.inputPrompt + "<" + habits.input + ">";
        return asked + "{menu}<" + word + ">" + outcome;
    }
    // Begins a visit.
    void Begin() { console.Type(menu.item).Type(menu.way); }
    // Leaves by `word` in place of 99.
    std::string VisitLeftBy(const std::string& word) {
        const screens::Names names = {{"99", word}};
        Menu left = menu;
        left.leave = screens::Abbreviated(left.leave, names);
        left.closing = screens::Abbreviated(left.closing, names);
        console.Type(left.leave);
        return VisitTyped(left);
    }

public:
    const Habits& habits = GetParam();
    const Menu& menu = habits.menu;
};

INSTANTIATE_TEST_SUITE_P(TestConsole, EachMenu, testing::ValuesIn(kMenus),
                         [](const auto& each) { return each.param.menu.name; });

} // namespace

TEST_P(EachMenu, TakesEverySpellingOfItsCommands) {
    Begin();
    std::string expected;
    for (const std::string& word : SpellingsOf(habits.command))
        expected += Step(word, habits.rest, habits.outcome);
    EXPECT_EQ(VisitLeftBy("+099x"), expected);
}

TEST_P(EachMenu, TakesNoNumberFromAWordThatIsNone) {
    Begin();
    std::string expected;
    for (const std::string& word : kNoNumbers)
        expected += Step(word, "", habits.noNumber);
    EXPECT_EQ(VisitLeftBy("99"), expected);
}

TEST_P(EachMenu, HasOneAnswerToNumbersThatItDoesNotKnow) {
    std::vector<std::string> words = {"0", "98", "100", "-2", "-99", "0x1", "257", "2147483647", "-2147483648"};
    words.insert(words.end(), habits.others.begin(), habits.others.end());
    if (habits.otherOutcome) {
        Begin();
        std::string expected;
        for (const std::string& word : words)
            expected += Step(word, habits.otherRest, *habits.otherOutcome);
        EXPECT_EQ(VisitLeftBy("99"), expected);
        return;
    }
    for (const std::string& word : words) {
        Begin();
        EXPECT_EQ(VisitLeftBy(word), "") << word;
    }
}

// With a question before the menu, both repeat.
TEST_P(EachMenu, RepeatsAtTheEndOfInput) {
    Begin();
    console.EndInput(2, menu.prompt);
    if (habits.input.empty()) {
        EXPECT_EQ(VisitLeftBy("99"), "{menu}<end of input>" + habits.noNumber + "{menu}" + habits.noNumber);
        return;
    }
    console.Type("99");
    const std::string dialogue = VisitTyped(menu.item);
    EXPECT_EQ(screens::Abbreviated(dialogue, {{menu.screen + "\n" + menu.prompt, "{menu}"}}),
              menu.opening + habits.inputPrompt + "<end of input>{menu}" + habits.inputPrompt +
                  "{menu}<99>{Destroy(SourceControl)}");
}

TEST_P(EachMenu, IsPrintedInOnePiece) {
    if (menu.print == nullptr)
        return;
    console.Run([this] { (menus.*menu.print)(); });
    EXPECT_EQ(console.Whole(), menu.screen + "\n{flush}");
    EXPECT_TRUE(Console::WroteInOnePiece(menu.screen));
}
