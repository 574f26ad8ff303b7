#pragma once

#include <functional>
#include <map>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace sim {

class ControlConnection;

// What norvex-simctl can ask for, by name. A request is one JSON object with the name as "command";
// a command answers on the connection, at once or later.
class ControlCommands {
public:
    using Command = std::function<void(const nlohmann::json& request, ControlConnection& asker)>;

    void Add(const std::string& name, Command command) { m_commands[name] = std::move(command); }
    // Null when there is none of that name.
    const Command* Find(const std::string& name) const {
        const auto found = m_commands.find(name);
        return found == m_commands.end() ? nullptr : &found->second;
    }

private:
    std::map<std::string, Command> m_commands;
};

} // namespace sim
