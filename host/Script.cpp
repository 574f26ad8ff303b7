#include "Script.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace host {

namespace {

const char kLineBlanks[] = " \t\r\v\f";

// More than any run needs, and no sum of times overflows.
constexpr double kLongestLimit = 3600.0;

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kLineBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kLineBlanks) - first + 1);
}

// The first word of `text`, which is trimmed; `rest` is set to what follows it.
std::string_view FirstWord(std::string_view text, std::string_view& rest) {
    const std::size_t end = text.find_first_of(kLineBlanks);
    rest = end == std::string_view::npos ? std::string_view() : Trim(text.substr(end));
    return text.substr(0, end);
}

std::optional<std::chrono::milliseconds> ParseSeconds(std::string_view text) {
    double seconds = 0;
    const auto [end, failure] =
        std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
    if (failure != std::errc() || end != text.data() + text.size() || !(seconds >= 0.001) || seconds > kLongestLimit) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

// The quoted text at the start of `text`; `rest` is set to what follows the closing quote.
std::optional<std::string> ParseQuoted(std::string_view text, std::string_view& rest) {
    std::string plain;
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] == '"') {
            rest = Trim(text.substr(at + 1));
            return plain;
        }
        if (text[at] != '\\') {
            plain += text[at];
            continue;
        }
        if (++at == text.size()) {
            break;
        }
        switch (text[at]) {
        case 'n':
            plain += '\n';
            break;
        case 't':
            plain += '\t';
            break;
        case '"':
        case '\\':
            plain += text[at];
            break;
        default:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

// `arguments` is what follows the word expect, trimmed. Returns the reason when it is malformed.
std::optional<std::string> ParseExpect(std::string_view arguments, ExpectStep& step) {
    if (arguments.empty()) {
        return "expect needs a text";
    }

    if (arguments.front() == '"') {
        std::string_view rest;
        const std::optional<std::string> text = ParseQuoted(arguments, rest);
        if (!text) {
            return "the quoted text has no closing quote or an unknown escape (known: \\\" \\\\ \\n \\t)";
        }
        if (text->empty()) {
            return "expect needs a text";
        }
        step.text = *text;
        if (rest.empty()) {
            return std::nullopt;
        }
        std::string_view seconds;
        if (FirstWord(rest, seconds) != "within") {
            return "only \"within SECONDS\" may follow a quoted text";
        }
        const auto limit = ParseSeconds(seconds);
        if (!limit) {
            return "SECONDS must be a number from 0.001 to 3600";
        }
        step.limit = *limit;
        return std::nullopt;
    }

    // An unquoted text may contain the word within: it is a limit only before a last number.
    step.text = arguments;
    const std::size_t lastBlank = arguments.find_last_of(kLineBlanks);
    if (lastBlank != std::string_view::npos) {
        const std::string_view before = Trim(arguments.substr(0, lastBlank));
        const std::size_t blank = before.find_last_of(kLineBlanks);
        const auto limit = ParseSeconds(arguments.substr(lastBlank + 1));
        if (limit && blank != std::string_view::npos && before.substr(blank + 1) == "within") {
            step.text = Trim(before.substr(0, blank));
            step.limit = *limit;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::vector<Step>> ParseScript(std::string_view text, ScriptError& error) {
    std::vector<Step> steps;
    for (unsigned number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string_view line = Trim(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);

        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::string_view arguments;
        if (FirstWord(line, arguments) == "expect") {
            ExpectStep step;
            if (const auto reason = ParseExpect(arguments, step)) {
                error = {number, *reason};
                return std::nullopt;
            }
            steps.push_back({number, std::move(step)});
        } else {
            const bool literal = line.front() == '\\';
            steps.push_back({number, TypeStep{std::string(line.substr(literal ? 1 : 0))}});
        }
    }
    return steps;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        switch (character) {
        case '\n':
            quoted += "\\n";
            break;
        case '\t':
            quoted += "\\t";
            break;
        case '"':
        case '\\':
            quoted += '\\';
            [[fallthrough]];
        default:
            quoted += character;
        }
    }
    return quoted + '"';
}

} // namespace host
