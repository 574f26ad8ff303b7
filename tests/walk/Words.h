#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "Coverage.h"
#include "Session.h"
#include "Table.h"

namespace walk {

// What stands where a word is asked for.
struct Asked {
    Form form = Form::Word;
    // Rows that words can lead to from here; none where a value is asked for.
    std::vector<const Row*> rows;
};

// Where the words of a session come from.
class Words {
public:
    virtual ~Words() = default;
    virtual Word next(const Asked& asked) = 0;
};

// Words drawn from what the menu accepts, what it almost accepts and what it does not; rows that
// were visited less come first. After `length` words, those that lead out.
class DrawnWords : public Words {
public:
    DrawnWords(std::uint64_t seed, long length, const Coverage& coverage);
    Word next(const Asked& asked) override;

private:
    std::string drawn(const Asked& asked);
    std::string leadingTo(const Row& row, Form form);
    std::string spelled(const std::string& value, Form form);
    std::string number();
    std::string odd();
    std::string oneOf(const std::vector<std::string>& words);
    std::size_t below(std::size_t limit);

    std::mt19937_64 m_random;
    long m_length;
    long m_count = 0;
    const Coverage& m_coverage;
};

// Words that are given; after them, those that lead out.
class GivenWords : public Words {
public:
    explicit GivenWords(std::vector<Word> words) : m_words(std::move(words)) {}
    Word next(const Asked& asked) override;

private:
    std::vector<Word> m_words;
    std::size_t m_next = 0;
};

} // namespace walk
