#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

// A line that is typed.
struct TypeStep {
    std::string line; // without the line end
};

// A text that must be printed before the script continues.
struct ExpectStep {
    std::string text;                                // never empty
    std::chrono::milliseconds limit = kDefaultLimit; // above 0

    // Longer than the time limit of a middleware call, so that the text of its failure can be
    // expected.
    static constexpr std::chrono::milliseconds kDefaultLimit = std::chrono::seconds(10);
};

struct Step {
    unsigned lineNumber; // from 1
    std::variant<TypeStep, ExpectStep> action;
};

// What is wrong with a script.
struct ScriptError {
    unsigned lineNumber;
    std::string reason;
};

// Parses a script (docs/host.md describes the format). Nothing, with `error` set, when a line is
// malformed.
std::optional<std::vector<Step>> ParseScript(std::string_view text, ScriptError& error);

// `text` in quotes on one line, as a script has it.
std::string Quoted(std::string_view text);

} // namespace host
