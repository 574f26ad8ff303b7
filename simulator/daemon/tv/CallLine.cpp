#include "CallLine.h"

#include <base/Program.h>
#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;

namespace {

// A value in a line with others: long ones are truncated.
std::string ToShortText(const json& argument) {
    constexpr std::size_t kMaxShown = 60;
    if (argument.contains("length"))
        return "...";
    std::string text = argument.value("value", json()).dump(-1, ' ', true, json::error_handler_t::replace);
    if (text.size() > kMaxShown)
        text.replace(kMaxShown, std::string::npos, "...");
    return text;
}

std::string ToName(const json& argument) {
    return argument.contains("name") ? argument.at("name").get<std::string>()
                                     : std::to_string(argument.value("place", 0));
}

} // namespace

std::string ToLine(const json& call) {
    const auto interface = call.at("interface").get<std::string>();
    std::string line = "#" + std::to_string(call.at("sequence").get<std::uint64_t>()) + " client " +
                       std::to_string(call.at("client").get<std::uint32_t>());
    if (const auto session = call.at("session").get<std::uint32_t>(); session != 0)
        line += " session " + std::to_string(session);
    // A client may send any name.
    line +=
        " " + EscapeControls(interface.substr(interface.rfind('.') + 1) + "." + call.at("method").get<std::string>());
    line += "(";
    const char* between = "";
    for (const json& argument : call.at("arguments")) {
        if (argument.at("direction") != "in")
            continue;
        line += between + ToName(argument) + "=" + ToShortText(argument);
        between = ", ";
    }
    line += ")";
    between = " = ";
    for (const json& result : call.at("results")) {
        line += between + ToName(result) + " " + ToShortText(result);
        between = ", ";
    }
    if (call.contains("injected"))
        line += " [injected: " + call.at("injected").get<std::string>() + "]";
    if (call.contains("fault"))
        line += " [" + call.at("fault").get<std::string>() + "]";
    return line;
}

} // namespace sim
