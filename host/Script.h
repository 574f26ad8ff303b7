#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

// A line that is typed.
struct TSTypeStep {
    std::string m_Line; // without its line end
};

// A text that has to be printed before the script goes on.
struct TSExpectStep {
    std::string m_Text;                                // never empty
    std::chrono::milliseconds m_Limit = kDefaultLimit; // above 0

    // Above the time that a middleware call may take before it is given up, so that its failure
    // text can be expected.
    static constexpr std::chrono::milliseconds kDefaultLimit = std::chrono::seconds(10);
};

struct TSStep {
    unsigned m_LineNumber; // from 1
    std::variant<TSTypeStep, TSExpectStep> m_Action;
};

// What is wrong with a script.
struct TSScriptError {
    unsigned m_LineNumber;
    std::string m_Reason;
};

// The steps of a script's text; docs/host.md tells its form. Nothing, with `error` filled, where a
// line is badly written.
std::optional<std::vector<TSStep>> ParseScript(std::string_view text, TSScriptError& error);

// `text` on one line, in the form that a script has it in.
std::string Quoted(std::string_view text);

} // namespace host
