#pragma once

#include <functional>
#include <string>

#include <CLI/CLI.hpp>

namespace simctl {

// What a subcommand is given, and what it leaves to be done once the whole line has been read.
struct Line {
    std::string socketPath;
    std::function<int()> run; // the program's status
};

// Each adds one subcommand to the table in main.cpp.
void AddState(CLI::App& app, Line& line);
void AddCalls(CLI::App& app, Line& line);
void AddInject(CLI::App& app, Line& line);
void AddWait(CLI::App& app, Line& line);
void AddReset(CLI::App& app, Line& line);
void AddSet(CLI::App& app, Line& line);
void AddSignal(CLI::App& app, Line& line);
void AddLineUp(CLI::App& app, Line& line);

} // namespace simctl
