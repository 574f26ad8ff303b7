// state, reset, set

#include <cstdio>
#include <memory>
#include <vector>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

namespace {

int ShowState(const std::string& socketPath, bool asJson) {
    json answer;
    if (!ControlSocket(socketPath).Ask({{"command", "state"}}, answer))
        return 1;
    const json& state = answer["state"];
    if (asJson) {
        std::puts(state.dump().c_str());
        return 0;
    }
    // A line a value, with the path that `wait` knows it by. What is empty has its line as well.
    const json flat = state.flatten();
    for (const auto& [path, value] : flat.items())
        std::printf("%s %s\n", path.c_str(), value.is_null() ? "-" : value.dump().c_str());
    return 0;
}

} // namespace

void AddState(CLI::App& app, Line& line) {
    CLI::App* state = app.add_subcommand("state", "Show the TV's state, a line a value");
    auto asJson = std::make_shared<bool>(false);
    state->add_flag("--json", *asJson, "One JSON object");
    state->callback([&line, asJson] {
        line.run = [&line, asJson] { return ShowState(line.socketPath, *asJson); };
    });
}

void AddReset(CLI::App& app, Line& line) {
    CLI::App* reset = app.add_subcommand(
        "reset", "Make the TV as it was when new; empty the journal, forget ordered failures");
    reset->callback([&line] {
        line.run = [&line] {
            json answer;
            return ControlSocket(line.socketPath).Ask({{"command", "reset"}}, answer) ? 0 : 1;
        };
    });
}

void AddSet(CLI::App& app, Line& line) {
    CLI::App* set = app.add_subcommand("set", "Change what a TV's surroundings change");
    auto words = std::make_shared<std::vector<std::string>>();
    set->add_option("words", *words, "What, and its new value; an unknown name lists them all")
        ->required()
        ->type_name("NAME VALUE...");
    set->callback([&line, words] {
        line.run = [&line, words] {
            json answer;
            const json request{
                {"command", "set"},
                {"name", words->front()},
                {"words", std::vector<std::string>(words->begin() + 1, words->end())}};
            return ControlSocket(line.socketPath).Ask(request, answer) ? 0 : 1;
        };
    });
}

} // namespace simctl
