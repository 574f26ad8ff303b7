#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// What is drawn by lot for the time after a word: a value depends on the seed, on the word's
// number, on what it is drawn for and on how often that was drawn since the word, and on nothing
// else.
namespace walk {

class Lots {
public:
    explicit Lots(std::uint64_t seed) : m_seed(seed) {}

    // Everything that follows is drawn for the time after this word.
    void wordTyped(long number);
    std::uint64_t draw(const std::string& what);
    std::string oneOf(const std::string& what, const std::vector<std::string>& choices);
    // True once in `times`.
    bool rarely(const std::string& what, unsigned times);
    // For another word than the current one, without counting.
    std::uint64_t drawAt(long word, const std::string& what) const;

private:
    std::uint64_t m_seed;
    long m_word = 0;
    std::map<std::string, unsigned> m_drawn;
};

} // namespace walk
