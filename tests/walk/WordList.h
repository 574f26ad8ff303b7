#pragma once

#include <string>
#include <vector>

#include "Session.h"

// Words of a session as text: "12:5 13:10 17:x%c3%a9", each with its number; what a shell would not
// take as it stands is written as two hexadecimal digits. A word without a number has its place's.
namespace walk::WordList {

std::string text(const std::vector<Word>& words);
// Throws std::invalid_argument, which says what is wrong with which word.
std::vector<Word> parsed(const std::string& text);

} // namespace walk::WordList
