#include <map>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "ControlConnection.h"

namespace sim {

using nlohmann::json;

namespace {

const std::map<std::string, Injection::Kind>& GetKinds() {
    static const std::map<std::string, Injection::Kind> kinds{{"result", Injection::Kind::Result},
                                                              {"delay", Injection::Kind::Delay},
                                                              {"drop", Injection::Kind::Drop},
                                                              {"close", Injection::Kind::Close},
                                                              {"die", Injection::Kind::Die}};
    return kinds;
}

} // namespace

void AddInjectCommand(Context& context) {
    context.commands.Add("inject", [&context](const json& request, ControlConnection& asker) {
        const auto name = request.at("method").get<std::string>();
        const auto kind = GetKinds().find(request.at("kind").get<std::string>());
        const auto number = request.value("number", std::int32_t{0});
        const auto count = request.value("count", 1u);
        const auto text = request.value("with", std::string());
        const std::vector<Operation*> methods = context.dispatcher.FindOperations(name);
        if (methods.empty())
            return asker.Fail("no operation is called \"" + name + "\"");
        if (kind == GetKinds().end() || count == 0 ||
            (kind->second == Injection::Kind::Delay && number < 0))
            return asker.Fail("no such failure");
        for (const Operation* method : methods)
            context.injections.Add(*method, {kind->second, number, text}, count);
        context.changes.Tell();
        asker.Answer(json::object());
    });
}

} // namespace sim
