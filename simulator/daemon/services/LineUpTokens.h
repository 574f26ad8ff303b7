#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sim {

// A token of a line; what stood in quotation marks is told from what did not.
struct LineUpToken {
    std::string text;
    bool quoted = false;
};

// Takes a line apart at blanks and tabs. A text in quotation marks is one token, with \" and \\ for
// the marks in it; # outside of one begins a comment. False: `error` is what was expected.
bool SplitLine(std::string_view line, std::vector<LineUpToken>& tokens, std::string& error);

// The text in quotation marks.
std::string Quote(std::string_view text);

} // namespace sim
