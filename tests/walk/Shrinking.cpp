#include "Shrinking.h"

#include <algorithm>

namespace walk {

namespace {

using Words = std::vector<Word>;

constexpr std::size_t kFew = 24;

Words without(const Words& words, std::size_t first, std::size_t count) {
    Words rest(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(first));
    const std::size_t next = std::min(first + count, words.size());
    rest.insert(rest.end(), words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
    return rest;
}

} // namespace

// The end first, since nothing after the finding counts; then pieces, halved until they are single
// words of which none can be left out. In a list that is short by then, pieces are taken from every
// place: one word may lead into a menu and the next one out of it.
Words shrunk(Words words, const std::function<bool(const Words&)>& shows) {
    std::size_t shortest = words.size();
    for (std::size_t least = 0; least < shortest;) {
        const std::size_t middle = (least + shortest) / 2;
        if (shows(without(words, middle, words.size())))
            shortest = middle;
        else
            least = middle + 1;
    }
    words.resize(shortest);

    for (std::size_t piece = std::max<std::size_t>(words.size() / 2, 1); piece > 0;) {
        bool shorter = false;
        for (std::size_t first = 0; first < words.size();) {
            Words rest = without(words, first, piece);
            if (shows(rest)) {
                words = std::move(rest);
                shorter = true;
            } else {
                first += words.size() <= kFew ? 1 : piece;
            }
        }
        if (!shorter || piece > 1)
            piece /= 2;
    }
    return words;
}

} // namespace walk
