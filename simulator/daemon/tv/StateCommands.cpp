#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "Event.h"
#include "Json.h"

namespace sim {

using nlohmann::json;

namespace {

std::string Describe(const json& state, bool asJson) {
    if (asJson)
        return ToText(state) + "\n";
    std::string lines;
    const json flat = state.flatten();
    for (const auto& [path, value] : flat.items())
        lines += path + " " + (value.is_null() ? "-" : ToText(value)) + "\n";
    return lines;
}

} // namespace

void AddStateCommands(Context& context) {
    context.commands.Add("state", "Show the TV's state, one line per value", [&](CommandLine& line) {
        auto asJson = std::make_shared<bool>(false);
        line.Flag("--json", *asJson, "One JSON object");
        return [&context, asJson](ControlConnection& connection) {
            connection.Print(Describe(context.DescribeState(), *asJson));
            connection.Finish();
        };
    });
    context.commands.Add("reset", "Restore the TV's initial state; empty the journal, remove injected failures",
                         [&](CommandLine&) {
                             return [&context](ControlConnection& connection) {
                                 const Event event(context);
                                 context.log.Write(kOwnTag, "reset");
                                 const std::string error = context.Reset();
                                 error.empty() ? connection.Finish() : connection.Fail(error);
                             };
                         });
    context.commands.Add("set", "Change the TV's environment", [&](CommandLine& line) {
        auto values = std::make_shared<std::vector<std::string>>();
        line.Texts("setting", *values, "NAME VALUE...",
                   "The setting and its new value; an unknown name lists all settings");
        return [&context, values](ControlConnection& connection) {
            const Event event(context);
            std::string error;
            if (context.Set(values->front(), {values->begin() + 1, values->end()}, error))
                connection.Finish();
            else
                connection.Fail(error);
        };
    });
}

} // namespace sim
