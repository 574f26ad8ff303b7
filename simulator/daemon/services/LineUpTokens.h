#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sim {

// A token of a line, quoted or not.
struct LineUpToken {
    std::string text;
    bool quoted = false;
};

// Splits a line at blanks and tabs. A quoted text is one token, with the escapes \" and \\; #
// outside of quotes begins a comment. False: `error` is what was expected.
bool SplitLine(std::string_view line, std::vector<LineUpToken>& tokens, std::string& error);

// The text in quotes.
std::string Quote(std::string_view text);

} // namespace sim
