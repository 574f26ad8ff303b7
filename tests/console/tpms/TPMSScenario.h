#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Console.h"
#include "FakeNorvexAPI.h"
#include "TPMSDebugMenu.h"

// The main menu as it stands on the screen, line end included.
extern const std::string kMainMenu;
// Entering and leaving, up to the first main menu and from the word that leaves.
extern const std::string kEntered;
extern const std::string kLeft;

// Words that are no number to the menus: letters, lone signs, beyond 32 bits; and the one number
// that means the same.
extern const std::vector<std::string> kNoNumbers;
// Words that are all the number `number`: signs, leading zeros, trailing letters.
std::vector<std::string> spellingsOf(const std::string& number);

// `prompt` answered with `word`, as a dialogue shows it.
std::string asked(const std::string& prompt, const std::string& word);
// The same at "cmd> ".
std::string cmd(const std::string& word);

// A visit to the test console in front of a faked middleware. After each test, all words have been
// asked for, everything was destroyed but what the test says is kept, and the thread is gone.
class TPMSScenario : public ::testing::Test {
protected:
    TPMSScenario();
    void TearDown() override;

    // Enters the test console, chooses `item`, types `words` and leaves. Gives the dialogue between
    // the item's word and the main menu that follows it.
    std::string visit(const std::string& item, const std::string& words);
    // The same for words that the test has typed already.
    std::string visitTyped(const std::string& item);
    // Enters the test console with the words that were typed.
    void enter();
    // The menu was written in one piece in the visits so far.
    void expectWrittenWhole(const std::string& menu) const;

    FakeNorvexAPI tv;
    Console console;
    TCDebugMenuTPMS menus;
    // Names of the sessions that are kept on purpose.
    std::vector<std::string> kept;
};
