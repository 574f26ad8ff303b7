#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Console.h"
#include "FakeNorvexAPI.h"
#include "Menus.h"
#include "TPMSDebugMenu.h"

// The main menu as it stands on the screen, line end included.
inline const std::string kMainMenu = screens::kTestConsole + "\n";
// Entering and leaving, up to the first main menu and from the word that leaves.
inline const std::string kEntered = "{g_main_loop_new(NULL, FALSE)}{CreateSignalSubscriber}";
inline const std::string kLeft = "{DestroySignalSubscriber}{g_main_loop_quit}{join}";

// Words that are no number to the menus: letters, lone signs, beyond 32 bits; and the one number
// that means the same.
inline const std::vector<std::string> kNoNumbers = {
    "abc", "-", "+", "x99", "--1", "+-1", ".5", "2147483648", "-2147483649", "99999999999999999999", "-1"};
// The same and what is channel 65535 in its low 16 bits.
inline const std::vector<std::string> kNoChannels = {
    "abc",        "-",     "+",          "x99",         "--1",
    "+-1",        ".5",    "2147483648", "-2147483649", "99999999999999999999",
    "-1",         "65535", "+65535",     "065535x",     "131071",
    "2147483647", "-65537"};
// Words that are all the number `number`: signs, leading zeros, trailing letters.
std::vector<std::string> SpellingsOf(const std::string& number);

// A visit to the test console in front of a faked middleware. After each test, all words have been
// asked for, everything was destroyed but what the test says is kept, and the thread is gone.
class TPMSScenario : public testing::Test {
protected:
    TPMSScenario();
    void TearDown() override;

    // Enters the test console, goes to the menu, types `words` and leaves both. Gives the dialogue
    // between the menu's opening and its closing, the menu's screen as "{menu}".
    std::string Visit(const Menu& menu, const std::string& words = "");
    // The same for an item without a menu: the dialogue between its word and the main menu.
    std::string Visit(const std::string& item, const std::string& words = "");
    // The same for words that the test has typed already, the item among them; to leave the test
    // console is typed for it.
    std::string VisitTyped(const Menu& menu);
    std::string VisitTyped(const std::string& item);
    // Enters the test console with the words that were typed; gives the dialogue.
    std::string Enter();
    // Runs one of its pieces with these words; gives the dialogue.
    std::string Run(const std::string& words, const std::function<void()>& piece);

public:
    FakeNorvexAPI tv;
    Console console;
    TCDebugMenuTPMS menus;
    // Names of the sessions that are kept on purpose.
    std::vector<std::string> kept;
};
