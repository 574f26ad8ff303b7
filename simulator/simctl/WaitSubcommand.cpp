#include <cstdint>
#include <memory>
#include <sstream>
#include <vector>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

namespace {

struct Options {
    std::vector<std::string> words;
    double seconds = 10;
};

// The condition may come as one word or as several.
std::vector<std::string> Split(const std::vector<std::string>& words) {
    std::vector<std::string> split;
    for (const std::string& word : words) {
        std::istringstream stream(word);
        for (std::string piece; stream >> piece;)
            split.push_back(piece);
    }
    return split;
}

// What is no JSON is a text: `wait /source/name == HDMI1`.
json ToValue(const std::string& word) {
    json value = json::parse(word, nullptr, false);
    return value.is_discarded() ? json(word) : value;
}

bool IsComparison(const std::string& word) {
    return word == "==" || word == "!=" || word == ">" || word == ">=" || word == "<" ||
           word == "<=";
}

json MakeRequest(const Options& options) {
    const std::vector<std::string> words = Split(options.words);
    json request{{"command", "wait"},
                 {"timeout", static_cast<std::uint32_t>(options.seconds * 1000)}};
    if (words.size() == 3 && words[0] == "calls") {
        const json number = json::parse(words[2], nullptr, false);
        if (!number.is_number_unsigned())
            throw CLI::ValidationError("wait", "\"" + words[2] + "\" is no number of calls");
        request["method"] = words[1];
        request["calls"] = number;
    } else if (words.size() >= 3 && words[0].starts_with('/') && IsComparison(words[1])) {
        std::string text = words[2];
        for (std::size_t word = 3; word < words.size(); ++word)
            text += " " + words[word];
        request["path"] = words[0];
        request["comparison"] = words[1];
        request["value"] = ToValue(text);
    } else {
        throw CLI::ValidationError("wait",
                                   "expected \"/PATH == VALUE\" or \"calls INTERFACE.METHOD N\"");
    }
    return request;
}

} // namespace

void AddWait(CLI::App& app, Line& line) {
    CLI::App* wait = app.add_subcommand(
        "wait", "Wait until the state at /PATH compares as told (==, !=, >, >=, <, <=), or until "
                "an operation has been called so often; status 1 when the time is over");
    auto options = std::make_shared<Options>();
    wait->add_option("condition", options->words, "/PATH == VALUE, or calls INTERFACE.METHOD N")
        ->required()
        ->type_name("CONDITION");
    wait->add_option("--timeout", options->seconds, "How long at most (10)")
        ->check(CLI::Range(0.0, 86400.0))
        ->type_name("SECONDS");
    wait->callback([&line, options] {
        const json request = MakeRequest(*options);
        line.run = [&line, options, request] {
            // The daemon keeps the time; a margin for one that does not answer.
            constexpr double kMargin = 10;
            json answer;
            return ControlSocket(line.socketPath).Ask(request, answer, options->seconds + kMargin)
                       ? 0
                       : 1;
        };
    });
}

} // namespace simctl
