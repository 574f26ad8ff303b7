#include "Lots.h"

namespace walk {

namespace {

// A mixer whose every output bit depends on every input bit.
std::uint64_t mixed(std::uint64_t x) {
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

std::uint64_t hash(const std::string& text) {
    std::uint64_t value = 0xcbf29ce484222325ULL;
    for (const char c : text)
        value = (value ^ static_cast<unsigned char>(c)) * 0x100000001b3ULL;
    return value;
}

} // namespace

void Lots::wordTyped(long number) {
    m_word = number;
    m_drawn.clear();
}

std::uint64_t Lots::draw(const std::string& what) {
    const unsigned nth = ++m_drawn[what];
    return mixed(drawAt(m_word, what) + nth);
}

std::string Lots::oneOf(const std::string& what, const std::vector<std::string>& choices) {
    return choices[draw(what) % choices.size()];
}

bool Lots::rarely(const std::string& what, unsigned times) {
    return draw(what) % times == 0;
}

std::uint64_t Lots::drawAt(long word, const std::string& what) const {
    return mixed(mixed(m_seed) + mixed(static_cast<std::uint64_t>(word) ^ hash(what)));
}

} // namespace walk
