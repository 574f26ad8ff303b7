#include "ControlCommands.h"

#include <algorithm>
#include <utility>

namespace sim {

void ControlCommands::Add(const std::string& name, const std::string& help, Command command) {
    m_commands[name] = {help, std::move(command)};
}

std::string ControlCommands::DescribeAll(const std::string& beginning) const {
    std::size_t width = 0;
    for (const auto& [name, entry] : m_commands)
        width = std::max(width, name.size() + 3);
    std::string lines = "Commands:\n";
    for (const auto& [name, entry] : m_commands) {
        if (name.starts_with(beginning))
            lines += "  " + name + std::string(width - name.size(), ' ') + entry.help + "\n";
    }
    return lines;
}

void ControlCommands::Execute(const std::vector<std::string>& arguments, ControlConnection& connection) const {
    std::string name;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help" || *argument == "-h") {
            connection.Print(DescribeAll(name));
            return connection.Finish();
        }
        name += (name.empty() ? "" : " ") + *argument;
        if (const auto found = m_commands.find(name); found != m_commands.end()) {
            CommandLine line("norvex-simctl " + name, found->second.help);
            const Run run = found->second.command(line);
            const auto ending = line.Parse({argument + 1, arguments.end()});
            if (!ending)
                return connection.Start(run);
            if (ending->status != 0)
                return connection.Fail(ending->text, ending->status);
            connection.Print(ending->text);
            return connection.Finish();
        }
        const auto longer = m_commands.lower_bound(name + " ");
        if (longer == m_commands.end() || !longer->first.starts_with(name + " "))
            return connection.Fail("unknown command '" + *argument + "'; --help lists them",
                                   CommandLine::kBadArguments);
    }
    connection.Fail("expected a command; --help lists them", CommandLine::kBadArguments);
}

} // namespace sim
