#include "TPMSScenario.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "FakeCore.h"
#include "FakeDevice.h"
#include "MainLoopWatch.h"
#include "Timeline.h"

const std::string kMainMenu = "====================================\n"
                              "\t[Process Debug List]\t\n"
                              "------------------------------------\n"
                              " 1. Reference Count Test\n"
                              " 2. AV Mute Test\n"
                              " 3. HDMI Anaysis (Capture) test\n"
                              " 4. GetCurrentTPMSStatus test\n"
                              " 5. SetTvMode to DTV Air\n"
                              " 6. SetDTVMode test\n"
                              " 7. SetSource Test\n"
                              " 8. RestartVideoDecorder\n"
                              " 9. Set AVMode test\n"
                              " 10. Check Tuner Signal Sate\n"
                              " 11. Get Lastest Channel info\n"
                              " 12. Preparation Logic Test\n"
                              " 13. Preparation SetTvMode with service Id Test\n"
                              " 14. Set Crop Video test\n"
                              " 15. Check Caption Exist test\n"
                              " 16. SetPreviewSource\n"
                              " 17. SIGNAL_TUNE_PREPARATION mechanism\n"
                              " 18. Epg Data Feeding\n"
                              " 19. IZoomControl test\n"
                              " 20. InvalidService test\n"
                              " 21. Set boot up service\n"
                              "------------------------------------\n"
                              " 99 : Exit\n"
                              "====================================\n"
                              "\n";

const std::string kEntered = "{g_main_loop_new(NULL, FALSE)}{CreateSignalSubscriber}";
const std::string kLeft = "{DestroySignalSubscriber}{g_main_loop_quit}{join}";

const std::vector<std::string> kNoNumbers = {
    "abc", "-", "+", "x99", "--1", "+-1", ".5", "2147483648", "-2147483649", "99999999999999999999",
    "-1"};

std::vector<std::string> spellingsOf(const std::string& number) {
    return {number,         "+" + number,  "0" + number, "+000" + number,
            number + "abc", number + ".9", number + "-1"};
}

std::string asked(const std::string& prompt, const std::string& word) {
    return prompt + "{typed " + word + "}";
}

std::string cmd(const std::string& word) {
    return asked("cmd> ", word);
}

namespace {

// A scenario that runs out of words ends the process, since the console's thread still runs.
[[noreturn]] void tellWhatHappened() {
    std::cerr << "the console was left by an exception, after:\n"
              << Timeline::now().dialogue() << std::endl;
    std::abort();
}

// Every prompt has been flushed out when its word is asked for. The two prompts for a pipeline
// flush by themselves alone: standard input is tied to standard output.
void expectPromptsFlushed(const std::string& whole) {
    const std::string word = "{typed ";
    for (std::size_t at = whole.find(word); at != std::string::npos;
         at = whole.find(word, at + 1)) {
        const std::string before = whole.substr(0, at);
        EXPECT_TRUE(before.ends_with("{flush}") || before.ends_with("MLS:1 > ") ||
                    before.ends_with("Analysis:2 > ") || before.ends_with("}"))
            << "not flushed: " << before.substr(before.size() > 80 ? before.size() - 80 : 0);
    }
}

} // namespace

TPMSScenario::TPMSScenario() {
    std::set_terminate(tellWhatHappened);
    FakeCore::reset();
    FakeDevice::clearVconf();
    MainLoopWatch::clear();
}

void TPMSScenario::TearDown() {
    EXPECT_EQ(console.wordsLeft(), 0U);
    EXPECT_EQ(tv.kept(), kept);
    EXPECT_EQ(tv.liveValues(), 0);
    EXPECT_EQ(MainLoopWatch::runsBegun(), MainLoopWatch::runsEnded());
    MainLoopWatch::clear();
}

void TPMSScenario::enter() {
    console.run([this] { menus.Enter(); });
}

std::string TPMSScenario::visit(const std::string& item, const std::string& words) {
    console.type(item).type(words);
    return visitTyped(item);
}

std::string TPMSScenario::visitTyped(const std::string& item) {
    console.type("99");
    enter();
    expectPromptsFlushed(console.whole());
    const std::string before = kEntered + kMainMenu + cmd(item);
    const std::string after = kMainMenu + cmd("99") + kLeft;
    const std::string dialogue = console.dialogue();
    if (!dialogue.starts_with(before) || !dialogue.ends_with(after) ||
        dialogue.size() < before.size() + after.size()) {
        ADD_FAILURE() << "not a visit to item " << item << ":\n" << dialogue;
        return "";
    }
    return dialogue.substr(before.size(), dialogue.size() - before.size() - after.size());
}

void TPMSScenario::expectWrittenWhole(const std::string& menu) const {
    const std::vector<std::string> pieces = console.insertions();
    EXPECT_TRUE(std::any_of(pieces.begin(), pieces.end(),
                            [&](const std::string& piece) {
                                // The line end that follows the menu may be a piece of its own.
                                return piece == menu || piece + "\n" == menu;
                            }))
        << "not written in one piece:\n"
        << menu;
}
