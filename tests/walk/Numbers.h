#pragma once

#include <cstdint>
#include <string>

#include "Table.h"

// What the prediction makes of words, by rules of its own.
namespace walk::numbers {

// `text` in the given form. `signedDigits`: whether the session's number test takes signed words.
std::string formed(const std::string& text, Form form, bool signedDigits);

// A byte as two hexadecimal digits.
std::string hexByte(unsigned char byte);

// A number written in decimal; unsigned ones above the signed range keep their bits.
std::int64_t value(const std::string& text);
// Whether `value` is one of a row's: the same text, within "a..b", or anything but 0 ("not 0").
bool matches(const std::string& value, const std::string& pattern);

} // namespace walk::numbers
