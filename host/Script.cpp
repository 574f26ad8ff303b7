#include "Script.h"

#include <algorithm>
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

// Whether `word` is `keyword`, or the same in other case, with one letter wrong, missing, too many or swapped with
// the next, or with more letters after it: a slip, rather than a word for the console.
bool IsLike(std::string_view word, std::string_view keyword) {
    std::string lower(word);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    word = lower;
    if (word.substr(0, keyword.size()) == keyword) {
        return true;
    }
    while (!word.empty() && !keyword.empty() && word.front() == keyword.front()) {
        word.remove_prefix(1);
        keyword.remove_prefix(1);
    }
    while (!word.empty() && !keyword.empty() && word.back() == keyword.back()) {
        word.remove_suffix(1);
        keyword.remove_suffix(1);
    }
    return (word.size() <= 1 && keyword.size() <= 1) ||
           (word.size() == 2 && keyword.size() == 2 && word[0] == keyword[1] && word[1] == keyword[0]);
}

// Whether one of the words of `text`, which is trimmed, is like `keyword`.
bool HasWordLike(std::string_view text, std::string_view keyword) {
    while (!text.empty()) {
        if (IsLike(FirstWord(text, text), keyword)) {
            return true;
        }
    }
    return false;
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
    if (HasWordLike(step.text, "within")) {
        return "after the text, only \"within SECONDS\" may follow, a number from 0.001 to 3600; a text with such a "
               "word needs quotes";
    }
    return std::nullopt;
}

// The size of the UTF-8 character at the start of `text`; 0 when it is malformed.
std::size_t CharacterSize(std::string_view text) {
    const auto byte = [text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u; };
    const unsigned first = byte(0);
    const unsigned second = byte(1);
    if (first < 0x80) {
        return 1;
    }
    // Overlong forms, surrogates and numbers above the last character are malformed.
    if (first < 0xc2 || first > 0xf4 || (first == 0xe0 && second < 0xa0) || (first == 0xed && second > 0x9f) ||
        (first == 0xf0 && second < 0x90) || (first == 0xf4 && second > 0x8f)) {
        return 0;
    }
    const std::size_t size = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    for (std::size_t at = 1; at < size; ++at) {
        if ((byte(at) & 0xc0) != 0x80) {
            return 0;
        }
    }
    return size;
}

// Why a line is not text; nothing when it is.
std::optional<std::string> FindMalformedText(std::string_view line) {
    while (!line.empty()) {
        if (line.front() == '\0') {
            return "a NUL byte: a script is a UTF-8 text";
        }
        const std::size_t size = CharacterSize(line);
        if (size == 0) {
            return "not UTF-8: a script is a UTF-8 text";
        }
        line.remove_prefix(size);
    }
    return std::nullopt;
}

// The step of a line that is trimmed and not empty. `reason` is set when it is malformed.
std::variant<TypeStep, ExpectStep> ParseLine(std::string_view line, std::optional<std::string>& reason) {
    if (line.front() == '\\') {
        return TypeStep{std::string(line.substr(1))};
    }
    std::string_view arguments;
    const std::string_view word = FirstWord(line, arguments);
    if (word == "expect") {
        ExpectStep step;
        reason = ParseExpect(arguments, step);
        return step;
    }
    for (const char* keyword : {"expect", "within"}) {
        if (IsLike(word, keyword)) {
            reason = Quoted(word) + " looks like a mistake for \"expect TEXT [within SECONDS]\"; to type it, put a "
                                    "backslash before it";
        }
    }
    return TypeStep{std::string(line)};
}

} // namespace

std::optional<std::vector<Step>> ParseScript(std::string_view text, ScriptError& error) {
    std::vector<Step> steps;
    if (text.substr(0, 3) == "\xef\xbb\xbf") {
        text.remove_prefix(3); // a byte-order mark, as some editors write it
    }
    if (const std::string_view mark = text.substr(0, 2); mark == "\xff\xfe" || mark == "\xfe\xff") {
        error = {1, "UTF-16: a script is a UTF-8 text"};
        return std::nullopt;
    }
    for (unsigned number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string_view line = Trim(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);

        std::optional<std::string> reason = FindMalformedText(line);
        if (!reason && !line.empty() && line.front() != '#') {
            steps.push_back({number, ParseLine(line, reason)});
        }
        if (reason) {
            error = {number, *reason};
            return std::nullopt;
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
