#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "ControlConnection.h"

namespace sim {

// The commands of norvex-simctl. Each is defined completely where it is added.
class ControlCommands {
public:
    // Answers on the connection, at once or later, using the parsed arguments.
    using Run = std::function<void(ControlConnection& connection)>;
    // Called for each request. The variables that the command line sets belong to the returned
    // function, which lives as long as the connection.
    using Command = std::function<Run(CommandLine& line)>;

    // A name may have several words: "lineup load". `help` is one line.
    void Add(const std::string& name, const std::string& help, Command command);
    // What a user typed after "norvex-simctl".
    void Execute(const std::vector<std::string>& arguments, ControlConnection& connection) const;

private:
    struct Entry {
        std::string help;
        Command command;
    };

    // One line per command whose name begins with this.
    std::string DescribeAll(const std::string& beginning) const;

    std::map<std::string, Entry> m_commands;
};

} // namespace sim
