#include "WordList.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>

#include "Numbers.h"

namespace walk {

namespace {

bool isPlain(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '+' || c == '-' || c == '.' ||
           c == '_';
}

std::string decoded(const std::string& word) {
    std::string result;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (word[at] != '%') {
            result += word[at];
            continue;
        }
        const std::string digits = word.substr(at + 1, 2);
        const bool areHex = digits.size() == 2 &&
                            std::all_of(digits.begin(), digits.end(),
                                        [](unsigned char c) { return std::isxdigit(c) != 0; });
        if (!areHex)
            throw std::invalid_argument("'" + word + "': two hexadecimal digits belong after '%'");
        result += static_cast<char>(std::stoi(digits, nullptr, 16));
        at += 2;
    }
    if (result.find_first_of(std::string(" \t\n\v\f\r\0", 7)) != std::string::npos)
        throw std::invalid_argument("'" + word + "' is not one word");
    return result;
}

} // namespace

std::string WordList::text(const std::vector<Word>& words) {
    std::string result;
    for (const Word& word : words) {
        result += (result.empty() ? "" : " ") + std::to_string(word.number) + ":";
        for (const char c : word.text) {
            result += isPlain(c) ? std::string(1, c)
                                 : "%" + numbers::hexByte(static_cast<unsigned char>(c));
        }
    }
    return result;
}

std::vector<Word> WordList::parsed(const std::string& text) {
    std::vector<Word> words;
    std::istringstream in(text);
    for (std::string piece; in >> piece;) {
        Word word{static_cast<long>(words.size()) + 1, piece};
        const std::size_t colon = piece.find(':');
        if (colon != std::string::npos) {
            const std::string number = piece.substr(0, colon);
            if (number.empty() || number.size() > 12 ||
                number.find_first_not_of("0123456789") != std::string::npos)
                throw std::invalid_argument("'" + piece + "': a number belongs before ':'");
            word = {std::stol(number), piece.substr(colon + 1)};
        }
        word.text = decoded(word.text);
        if (word.text.empty())
            throw std::invalid_argument("'" + piece + "' has no word");
        words.push_back(word);
    }
    return words;
}

} // namespace walk
