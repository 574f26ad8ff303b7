#include <cstdio>
#include <memory>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

namespace {

// A value on a line of its own among others: long ones are cut.
std::string ToText(const json& argument) {
    constexpr std::size_t kMaxShown = 60;
    if (argument.contains("length"))
        return "...";
    std::string word =
        argument.value("value", json()).dump(-1, ' ', true, json::error_handler_t::replace);
    if (word.size() > kMaxShown)
        word.replace(kMaxShown, std::string::npos, "...");
    return word;
}

std::string ToName(const json& argument) {
    return argument.contains("name") ? argument.at("name").get<std::string>()
                                     : std::to_string(argument.value("place", 0));
}

// #12 client 1 IDebugPrintControl.Execute(command="items") = status 1, screen "..."
std::string ToReadableLine(const json& call) {
    const auto interface = call.at("interface").get<std::string>();
    std::string line = "#" + std::to_string(call.at("sequence").get<std::uint64_t>()) + " client " +
                       std::to_string(call.at("client").get<std::uint32_t>());
    if (const auto session = call.at("session").get<std::uint32_t>(); session != 0)
        line += " session " + std::to_string(session);
    line += " " + interface.substr(interface.rfind('.') + 1) + "." +
            call.at("method").get<std::string>() + "(";
    const char* between = "";
    for (const json& argument : call.at("arguments")) {
        if (argument.at("direction") != "in")
            continue;
        line += between + ToName(argument) + "=" + ToText(argument);
        between = ", ";
    }
    line += ")";
    between = " = ";
    for (const json& result : call.at("results")) {
        line += between + ToName(result) + " " + ToText(result);
        between = ", ";
    }
    if (call.contains("injected"))
        line += " [" + call.at("injected").get<std::string>() + " by order]";
    if (call.contains("fault"))
        line += " [" + call.at("fault").get<std::string>() + "]";
    return line;
}

int ShowCalls(const std::string& socketPath, bool follow, bool asJson) {
    const json request{{"command", "calls"}, {"follow", follow}};
    const bool done = ControlSocket(socketPath).AskForLines(request, [&](const json& answer) {
        if (answer.contains("lost"))
            Complain(answer.at("lost").dump() + " calls are no longer kept");
        else if (asJson)
            std::puts(answer.at("call").dump().c_str());
        else
            std::puts(ToReadableLine(answer.at("call")).c_str());
        return std::fflush(stdout) == 0;
    });
    return done ? 0 : 1;
}

struct Options {
    bool follow = false;
    bool asJson = false;
};

} // namespace

void AddCalls(CLI::App& app, Line& line) {
    CLI::App* calls = app.add_subcommand("calls", "Show the journal, a line a call");
    auto options = std::make_shared<Options>();
    calls->add_flag("--follow", options->follow, "Go on with the calls to come");
    calls->add_flag("--json", options->asJson, "A JSON object a line, with all arguments whole");
    calls->callback([&line, options] {
        line.run = [&line, options] {
            return ShowCalls(line.socketPath, options->follow, options->asJson);
        };
    });
}

} // namespace simctl
