// How a finding is made short, and how its words are written down.

#include <algorithm>

#include <gtest/gtest.h>

#include "Shrinking.h"
#include "WordList.h"

using walk::Word;
using walk::WordList::parsed;

namespace {

std::vector<Word> numbered(long count) {
    std::vector<Word> words;
    for (long i = 1; i <= count; ++i)
        words.push_back({i, std::to_string(i)});
    return words;
}

bool has(const std::vector<Word>& words, long number) {
    return std::any_of(words.begin(), words.end(),
                       [&](const Word& word) { return word.number == number; });
}

} // namespace

TEST(Shrinking, LeavesTheWordsThatItTakes) {
    const auto few = walk::shrunk(numbered(300), [](const std::vector<Word>& words) {
        return has(words, 17) && has(words, 18) && has(words, 250);
    });
    EXPECT_EQ(walk::WordList::text(few), "17:17 18:18 250:250");
}

TEST(Shrinking, LeavesOneWordOrNone) {
    EXPECT_EQ(walk::WordList::text(walk::shrunk(
                  numbered(7), [](const std::vector<Word>& words) { return has(words, 7); })),
              "7:7");
    EXPECT_TRUE(walk::shrunk(numbered(7), [](const std::vector<Word>&) { return true; }).empty());
}

TEST(Shrinking, LeavesNoWordThatCouldGo) {
    // Any two of the numbers that 10 divides.
    const auto few = walk::shrunk(numbered(100), [](const std::vector<Word>& words) {
        return std::count_if(words.begin(), words.end(),
                             [](const Word& word) { return word.number % 10 == 0; }) >= 2;
    });
    EXPECT_EQ(few.size(), 2U);
}

TEST(Shrinking, LeavesPairsOutWhereverTheyStand) {
    // 2 and 3 go together, or not at all; 1 and 4 stay.
    const auto few = walk::shrunk(numbered(4), [](const std::vector<Word>& words) {
        return has(words, 1) && has(words, 4) && has(words, 2) == has(words, 3);
    });
    EXPECT_EQ(walk::WordList::text(few), "1:1 4:4");
}

TEST(WordList, IsReadAsItIsWritten) {
    const std::vector<Word> words = {{3, "99"}, {12, "x\xc3\xa9%:$'\""}, {900, "-0"}};
    const std::vector<Word> read = parsed(walk::WordList::text(words));
    ASSERT_EQ(read.size(), words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(read[i].number, words[i].number);
        EXPECT_EQ(read[i].text, words[i].text);
    }
}

TEST(WordList, NumbersWordsByTheirPlace) {
    EXPECT_EQ(walk::WordList::text(parsed(" 5 10\n99 ")), "1:5 2:10 3:99");
}

TEST(WordList, RefusesWhatIsNoWord) {
    for (const char* text :
         {"1:", "x:5", ":5", "1:%", "1:%4", "1:%zz", "1:a%20b", "1:%0A", "1234567890123:5"})
        EXPECT_THROW(parsed(text), std::invalid_argument) << text;
}
