#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "ControlConnection.h"

namespace sim {

// The commands of norvex-simctl: what each takes and does is said in one place, where it is added.
class ControlCommands {
public:
    // Answers on the connection, at once or later, with the arguments that its command line took.
    using Run = std::function<void(ControlConnection& asker)>;
    // Called for each request. The variables that the command line fills belong to what is returned, which lives as
    // long as the connection.
    using Command = std::function<Run(CommandLine& line)>;

    // A name may be of several words: "lineup load". `help` is one line.
    void Add(const std::string& name, const std::string& help, Command command);
    // What a user typed after "norvex-simctl".
    void Execute(const std::vector<std::string>& arguments, ControlConnection& asker) const;

private:
    struct Entry {
        std::string help;
        Command command;
    };

    // One line for each command whose name begins so.
    std::string DescribeAll(const std::string& beginning) const;

    std::map<std::string, Entry> m_commands;
};

} // namespace sim
