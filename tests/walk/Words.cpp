#include "Words.h"

#include <algorithm>

#include "Numbers.h"

namespace walk {

namespace {

// Numbers that may be rows, and those at the limits of what numbers are made of.
const std::vector<std::string> kNumbers = {
    "0",     "1",      "2",          "3",          "4",          "5",           "6",
    "7",     "8",      "9",          "10",         "11",         "12",          "13",
    "14",    "15",     "16",         "17",         "18",         "19",          "20",
    "21",    "22",     "42",         "47",         "48",         "98",          "99",
    "100",   "101",    "255",        "-1",         "-2",         "-5",          "-99",
    "32767", "32768",  "65534",      "65535",      "65536",      "131071",      "-32768",
    "65635", "999999", "2147483647", "2147483648", "4294967295", "-2147483648", "-2147483649"};

// Almost numbers, and nothing like one.
const std::vector<std::string> kOdd = {
    "099",
    "+99",
    "+1",
    "-0",
    "+0",
    "000",
    "007",
    "1x",
    "12abc",
    "0x10",
    "1.5",
    "5-1",
    "--1",
    "+-1",
    "-",
    "+",
    ".",
    ".5",
    "x99",
    "99x",
    "9_9",
    "1,000",
    "1e3",
    "4294967297",
    "4294967395",
    "8589934593",
    "18446744073709551615",
    "18446744073709551616",
    "99999999999999999999",
    "-99999999999999999999",
    "9223372036854775807",
    "-9223372036854775808",
    "00000000000000000000000000000000000000000000000000000000000000000001",
    "abc",
    "quit",
    "help",
    "exit",
    "true",
    "NaN",
    "inf",
    "%d%s%n",
    "\"",
    "\\",
    "\\n",
    "'",
    "$ret",
    "{typed",
    "*",
    "~",
    "\xc3\xa9",
    "\xd9\xa1",
    "\xef\xbc\x91",
    "\xf0\x9f\x93\xba",
    "\xff\xfe",
    "\x01",
    "\x7f",
};

bool leaves(const Acts& acts) {
    return std::any_of(acts.begin(), acts.end(), [](const Act& act) {
        return act.kind == Act::Kind::Leave || act.kind == Act::Kind::Return;
    });
}

// The word that leads out of the menu, or nearer to where one is.
std::string leading(const Asked& asked) {
    for (const Row* row : asked.rows) {
        if (leaves(row->acts))
            return row->values.empty() ? "99" : row->values.front();
    }
    return "0";
}

} // namespace

DrawnWords::DrawnWords(std::uint64_t seed, long length, const Coverage& coverage)
    : m_random(seed), m_length(length), m_coverage(coverage) {}

Word DrawnWords::next(const Asked& asked) {
    ++m_count;
    return {m_count, m_count > m_length ? leading(asked) : drawn(asked)};
}

std::string DrawnWords::drawn(const Asked& asked) {
    const std::size_t kind = below(100);
    if (kind < 55 && !asked.rows.empty()) {
        std::vector<const Row*> rows = asked.rows;
        std::shuffle(rows.begin(), rows.end(), m_random);
        const Row* least =
            *std::min_element(rows.begin(), rows.end(), [this](const Row* one, const Row* other) {
                return m_coverage.score(*one) < m_coverage.score(*other);
            });
        return leadingTo(*least, asked.form);
    }
    if (kind < 70 && !asked.rows.empty())
        return leadingTo(*asked.rows[below(asked.rows.size())], asked.form);
    return kind < 85 ? number() : odd();
}

std::string DrawnWords::leadingTo(const Row& row, Form form) {
    if (row.values.empty())
        return below(2) ? number() : odd();
    const std::string& value = row.values[below(row.values.size())];
    const std::size_t dots = value.find("..");
    if (dots != std::string::npos) {
        const std::int64_t first = numbers::value(value.substr(0, dots));
        const std::int64_t last = numbers::value(value.substr(dots + 2));
        const auto span = static_cast<std::size_t>(last - first + 1);
        return std::to_string(first + static_cast<std::int64_t>(below(span)));
    }
    if (value == kNotZero)
        return number();
    return value == "bad" ? odd() : spelled(value, form);
}

// Other spellings that the form takes for the same number; now and then one that it does not.
std::string DrawnWords::spelled(const std::string& value, Form form) {
    if (below(100) < 70 || value.empty() || value[0] == '-')
        return value;
    const auto beyond = [&](std::int64_t times) {
        return std::to_string(times * (std::int64_t{1} << 32) + numbers::value(value));
    };
    if (form == Form::Digits || form == Form::DigitsOnly)
        return oneOf({"0" + value, "0000" + value, beyond(1), beyond(2), beyond(1000)});
    return oneOf({"+" + value, "0" + value, "+000" + value, value + "abc", value + ".9",
                  value + "-1", value + "\xc3\xa9", "-" + value});
}

std::string DrawnWords::number() {
    if (below(4) == 0)
        return std::to_string(static_cast<std::int64_t>(below(200000)) - 70000);
    return oneOf(kNumbers);
}

std::string DrawnWords::odd() {
    if (below(40) == 0)
        return std::string(1 + below(3000), below(2) ? 'w' : '9');
    return oneOf(kOdd);
}

std::string DrawnWords::oneOf(const std::vector<std::string>& words) {
    return words[below(words.size())];
}

std::size_t DrawnWords::below(std::size_t limit) {
    return m_random() % limit;
}

Word GivenWords::next(const Asked& asked) {
    // Far from the numbers of words that were left out.
    constexpr long kLeadingOut = 1000000000;
    if (m_next < m_words.size())
        return m_words[m_next++];
    return {kLeadingOut + static_cast<long>(m_next++), leading(asked)};
}

} // namespace walk
