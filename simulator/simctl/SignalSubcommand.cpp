// signal

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

void AddSignal(CLI::App& app, Line& line) {
    CLI::App* signal = app.add_subcommand(
        "signal", "Send a signal to every registered callback; print how many were sent");
    auto words = std::make_shared<std::vector<std::string>>();
    signal
        ->add_option("words", *words,
                     "Its number or name, and its values: profile, screen, data, count, and "
                     "those of its type")
        ->required()
        ->type_name("TYPE NAME=VALUE...");
    signal->callback([&line, words] {
        line.run = [&line, words] {
            json answer;
            if (!ControlSocket(line.socketPath)
                     .Ask({{"command", "signal"}, {"words", *words}}, answer))
                return 1;
            std::puts(answer["sent"].dump().c_str());
            return 0;
        };
    });
}

} // namespace simctl
