#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "ControlConnection.h"

namespace sim {

using nlohmann::json;

void AddStateCommands(Context& context) {
    context.commands.Add("state", [&context](const json&, ControlConnection& asker) {
        asker.Answer({{"state", context.DescribeState()}});
    });
    context.commands.Add("reset", [&context](const json&, ControlConnection& asker) {
        context.log.SetSequence(context.journal.TakeSequence());
        context.log.Write(kOwnTag, "reset");
        const std::string error = context.Reset();
        context.log.SetSequence(0);
        if (error.empty())
            asker.Answer(json::object());
        else
            asker.Fail(error);
    });
    context.commands.Add("set", [&context](const json& request, ControlConnection& asker) {
        const auto name = request.at("name").get<std::string>();
        const auto words = request.at("words").get<std::vector<std::string>>();
        context.log.SetSequence(context.journal.TakeSequence());
        std::string error;
        const bool done = context.settings.Set(name, words, error);
        context.changes.Tell();
        context.log.SetSequence(0);
        if (done)
            asker.Answer(json::object());
        else
            asker.Fail(error);
    });
}

} // namespace sim
