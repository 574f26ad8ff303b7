#include "Numbers.h"

namespace walk::numbers {

namespace {

// The digits that a word begins with, after a sign; saturating far beyond what any form needs.
struct Beginning {
    bool hasDigits = false;
    bool whole = false;
    std::int64_t number = 0;
    bool beyond64 = false;
};

Beginning beginning(const std::string& word) {
    Beginning result;
    std::size_t at = 0;
    const bool negative = !word.empty() && word[0] == '-';
    if (!word.empty() && (word[0] == '-' || word[0] == '+'))
        at = 1;
    for (; at < word.size() && word[at] >= '0' && word[at] <= '9'; ++at) {
        result.hasDigits = true;
        const int digit = word[at] - '0';
        if (result.number > (INT64_MAX - digit) / 10) {
            result.beyond64 = true;
            result.number = INT64_MAX;
        } else {
            result.number = result.number * 10 + digit;
        }
    }
    result.whole = result.hasDigits && at == word.size();
    if (negative)
        result.number = result.beyond64 ? INT64_MIN : -result.number;
    return result;
}

std::string low32(std::int64_t number) {
    return std::to_string(static_cast<std::int32_t>(static_cast<std::uint32_t>(number)));
}

std::string digits(const std::string& word, bool signedDigits) {
    const bool isSigned = !word.empty() && (word[0] == '-' || word[0] == '+');
    const Beginning number = beginning(word);
    if (!number.whole || (isSigned && !signedDigits))
        return "bad";
    return low32(number.number);
}

std::string readInt(const std::string& word) {
    const Beginning number = beginning(word);
    if (!number.hasDigits || number.number > INT32_MAX || number.number < INT32_MIN)
        return "bad";
    return std::to_string(number.number);
}

std::string leftByInt(const std::string& word) {
    const Beginning number = beginning(word);
    if (!number.hasDigits)
        return "0";
    if (number.number > INT32_MAX)
        return std::to_string(INT32_MAX);
    if (number.number < INT32_MIN)
        return std::to_string(INT32_MIN);
    return std::to_string(number.number);
}

std::string command(const std::string& word) {
    const std::string number = readInt(word);
    return number == "bad" ? "-1" : number;
}

std::string low16(std::int64_t number) {
    return std::to_string(static_cast<std::uint16_t>(number));
}

std::string field(std::int64_t number, int shift) {
    return std::to_string(static_cast<std::int16_t>(static_cast<std::uint64_t>(number) >>
                                                    static_cast<unsigned>(shift)));
}

std::string hex32(std::int64_t number) {
    std::string text;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        text += hexByte(static_cast<unsigned char>(static_cast<std::uint64_t>(number) >> shift));
    }
    return text;
}

std::string textTree(const std::string& text) {
    std::string tree = "{0=value " + hex32(static_cast<std::int64_t>(text.size()));
    if (!text.empty()) {
        tree += ", 1=bytes \"";
        for (const char c : text) {
            const bool plain = c >= ' ' && c < 0x7f && c != '"' && c != '\\';
            tree += plain ? std::string(1, c) : "\\x" + hexByte(static_cast<unsigned char>(c));
        }
        tree += '"';
    }
    return tree + "}";
}

} // namespace

std::string hexByte(unsigned char byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    return {kDigits[byte >> 4U], kDigits[byte & 0xfU]};
}

std::string formed(const std::string& text, Form form, bool signedDigits) {
    switch (form) {
    case Form::Same:
    case Form::Word:
        return text;
    case Form::DigitsOnly:
        return digits(text, false);
    case Form::Digits:
        return digits(text, signedDigits);
    case Form::Int:
        return readInt(text);
    case Form::Command:
        return command(text);
    case Form::Channel:
        return low16(value(command(text)));
    case Form::LeftByInt:
        return leftByInt(text);
    case Form::Long:
        return low32(beginning(text).number);
    case Form::LongLow16:
        return low16(beginning(text).number);
    case Form::Low16:
        return low16(value(text));
    case Form::Field0:
        return field(value(text), 0);
    case Form::Field16:
        return field(value(text), 16);
    case Form::Field32:
        return field(value(text), 32);
    case Form::Low8:
        return std::to_string(static_cast<std::uint8_t>(value(text)));
    case Form::TextTree:
        return textTree(text);
    case Form::Hex32:
        return hex32(value(text));
    }
    return text;
}

std::int64_t value(const std::string& text) {
    if (text.empty() || text == "bad" || text == "none")
        return 0;
    return text[0] == '-' ? std::stoll(text) : static_cast<std::int64_t>(std::stoull(text));
}

bool matches(const std::string& value, const std::string& pattern) {
    if (value == pattern)
        return true;
    if (pattern == kNotZero)
        return value != "0";
    const std::size_t dots = pattern.find("..");
    const bool isNumber =
        !value.empty() &&
        value.find_first_not_of("0123456789", value[0] == '-' ? 1 : 0) == std::string::npos &&
        value != "-";
    if (dots == std::string::npos || !isNumber)
        return false;
    const std::int64_t number = numbers::value(value);
    return number >= numbers::value(pattern.substr(0, dots)) &&
           number <= numbers::value(pattern.substr(dots + 2));
}

} // namespace walk::numbers
