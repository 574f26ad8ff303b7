#include <nlohmann/json.hpp>

#include "Chassis.h"
#include "Commands.h"
#include "ControlConnection.h"

namespace sim {

using nlohmann::json;

void AddStateCommands(Chassis& chassis) {
    chassis.commands.Add("state", [&chassis](const json&, ControlConnection& asker) {
        asker.Answer({{"state", chassis.DescribeState()}});
    });
    chassis.commands.Add("reset", [&chassis](const json&, ControlConnection& asker) {
        chassis.log.SetSequence(chassis.journal.TakeSequence());
        chassis.log.Write(kOwnTag, "reset");
        const std::string error = chassis.Reset();
        chassis.log.SetSequence(0);
        if (error.empty())
            asker.Answer(json::object());
        else
            asker.Fail(error);
    });
    chassis.commands.Add("set", [&chassis](const json& request, ControlConnection& asker) {
        const auto name = request.at("name").get<std::string>();
        const auto words = request.at("words").get<std::vector<std::string>>();
        chassis.log.SetSequence(chassis.journal.TakeSequence());
        std::string error;
        const bool done = chassis.settables.Set(name, words, error);
        chassis.changes.Tell();
        chassis.log.SetSequence(0);
        if (done)
            asker.Answer(json::object());
        else
            asker.Fail(error);
    });
}

} // namespace sim
