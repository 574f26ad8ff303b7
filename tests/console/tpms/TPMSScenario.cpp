#include "TPMSScenario.h"

#include <cstdlib>
#include <exception>
#include <iostream>

#include "CoreWatch.h"
#include "FakeDevice.h"
#include "MainLoopWatch.h"

std::vector<std::string> SpellingsOf(const std::string& number) {
    return {number, "+" + number, "0" + number, "+000" + number, number + "abc", number + ".9", number + "-1"};
}

namespace {

// A scenario that runs out of words ends the process, since the console's thread still runs.
[[noreturn]] void TellWhatHappened() {
    std::cerr << "the console was left by an exception, after:\n" << Timeline::Now().Dialogue() << std::endl;
    std::abort();
}

// Every prompt has been flushed out when its word is asked for. The two prompts for a pipeline
// flush by themselves alone: standard input is tied to standard output.
void ExpectPromptsFlushed(const std::string& whole) {
    for (std::size_t at = whole.find('<'); at != std::string::npos; at = whole.find('<', at + 1)) {
        const std::string before = whole.substr(0, at);
        EXPECT_TRUE(before.ends_with("{flush}") || before.ends_with("MLS:1 > ") || before.ends_with("Analysis:2 > ") ||
                    before.ends_with("}"))
            << "not flushed: " << before.substr(before.size() > 80 ? before.size() - 80 : 0);
    }
}

// What stands between the two in a dialogue.
std::string Between(const std::string& before, const std::string& dialogue, const std::string& after) {
    if (!dialogue.starts_with(before) || !dialogue.ends_with(after) || dialogue.size() < before.size() + after.size()) {
        ADD_FAILURE() << "expected a beginning\n" << before << "\nand an end\n" << after;
        return dialogue;
    }
    return dialogue.substr(before.size(), dialogue.size() - before.size() - after.size());
}

} // namespace

TPMSScenario::TPMSScenario() {
    std::set_terminate(TellWhatHappened);
    CoreWatch::Reset();
    FakeDevice::ClearVconf();
    MainLoopWatch::Clear();
}

void TPMSScenario::TearDown() {
    EXPECT_EQ(console.CountWordsLeft(), 0U);
    EXPECT_EQ(tv.GetKept(), kept);
    EXPECT_EQ(tv.CountLiveValues(), 0);
    EXPECT_EQ(MainLoopWatch::CountBegunRuns(), MainLoopWatch::CountEndedRuns());
    MainLoopWatch::Clear();
}

std::string TPMSScenario::Run(const std::string& words, const std::function<void()>& piece) {
    Timeline::Now().Clear();
    console.Type(words).Run(piece);
    return console.Dialogue();
}

std::string TPMSScenario::Enter() {
    return Run("", [this] { menus.Enter(); });
}

std::string TPMSScenario::Visit(const std::string& item, const std::string& words) {
    console.Type(item).Type(words);
    return VisitTyped(item);
}

std::string TPMSScenario::Visit(const Menu& menu, const std::string& words) {
    console.Type(menu.item).Type(menu.way).Type(words).Type(menu.leave);
    return VisitTyped(menu);
}

std::string TPMSScenario::VisitTyped(const std::string& item) {
    console.Type("99");
    const std::string dialogue = Enter();
    ExpectPromptsFlushed(console.Whole());
    return Between(kEntered + kMainMenu + "cmd> <" + item + ">", dialogue, kMainMenu + "cmd> <99>" + kLeft);
}

std::string TPMSScenario::VisitTyped(const Menu& menu) {
    const std::string dialogue =
        screens::Abbreviated(VisitTyped(menu.item), {{menu.screen + "\n" + menu.prompt, "{menu}"}});
    EXPECT_TRUE(Console::WroteInOnePiece(menu.screen));
    return Between(menu.opening, dialogue, menu.closing);
}
