// norvex-simctl: looks at a simulated TV and changes its surroundings.

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "Subcommands.h"
#include <base/Path.h>

namespace {

// The command line's words, last one first, as CLI11 takes them. It would take a word in brackets
// for a list of its own; with a blank behind it `wait /daemon/clients == []` keeps its value.
std::vector<std::string> TakeWords(int count, char** words) {
    std::vector<std::string> taken(words + 1, words + count);
    for (std::string& word : taken) {
        if (word.starts_with('[') && word.ends_with(']'))
            word += ' ';
    }
    std::reverse(taken.begin(), taken.end());
    return taken;
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int count, char** words) {
    CLI::App app{"Looks at a simulated TV (norvex-sim), waits for it, makes it fail.",
                 "norvex-simctl"};
    simctl::Line line;
    line.socketPath = sim::GetDefaultSocketPath();
    app.add_option("--socket", line.socketPath, "The TV's socket")
        ->envname("NORVEX_SOCKET")
        ->type_name("PATH");
    app.require_subcommand(1);
    app.fallthrough();

    simctl::AddState(app, line);
    simctl::AddCalls(app, line);
    simctl::AddInject(app, line);
    simctl::AddWait(app, line);
    simctl::AddReset(app, line);
    simctl::AddSet(app, line);
    simctl::AddSignal(app, line);
    simctl::AddLineUp(app, line);

    try {
        app.parse(TakeWords(count, words));
    } catch (const CLI::CallForHelp&) {
        const auto chosen = app.get_subcommands();
        std::cout << (chosen.empty() ? app.help() : chosen.front()->help(app.get_name()));
        return 0;
    } catch (const CLI::Error& error) {
        std::cerr << "norvex-simctl: " + std::string(error.what()) + "\n";
        return 2;
    }
    return line.run();
}
