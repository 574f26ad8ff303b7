#include "LineUpTokens.h"

#include <glib.h>

namespace sim {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Reads from after the opening quote to after the closing one.
bool ReadQuoted(std::string_view& rest, std::string& text, std::string& error) {
    while (!rest.empty() && rest.front() != '"') {
        char c = rest.front();
        rest.remove_prefix(1);
        if (static_cast<unsigned char>(c) < ' ') {
            error = "expected a text without control characters";
            return false;
        }
        if (c == '\\') {
            c = rest.empty() ? '\0' : rest.front();
            if (c != '"' && c != '\\') {
                error = "expected \\\" or \\\\ in a text";
                return false;
            }
            rest.remove_prefix(1);
        }
        text += c;
    }
    if (rest.empty()) {
        error = "expected a closing \" before the end of the line";
        return false;
    }
    rest.remove_prefix(1);
    return true;
}

} // namespace

bool SplitLine(std::string_view line, std::vector<LineUpToken>& tokens, std::string& error) {
    tokens.clear();
    if (!g_utf8_validate(line.data(), static_cast<gssize>(line.size()), nullptr)) {
        error = "expected UTF-8";
        return false;
    }
    while (!line.empty()) {
        if (IsBlank(line.front())) {
            line.remove_prefix(1);
            continue;
        }
        if (line.front() == '#')
            return true;
        LineUpToken& token = tokens.emplace_back();
        if (line.front() == '"') {
            line.remove_prefix(1);
            token.quoted = true;
            if (!ReadQuoted(line, token.text, error))
                return false;
        } else {
            std::size_t size = 0;
            while (size < line.size() && !IsBlank(line[size]) && line[size] != '"')
                ++size;
            token.text = line.substr(0, size);
            line.remove_prefix(size);
        }
        if (!line.empty() && !IsBlank(line.front())) {
            error = "expected a blank after " + (token.quoted ? Quote(token.text) : token.text);
            return false;
        }
    }
    return true;
}

std::string Quote(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

} // namespace sim
