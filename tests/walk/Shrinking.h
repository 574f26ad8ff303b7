#pragma once

#include <functional>
#include <vector>

#include "Session.h"

namespace walk {

// The shortest list that can be had of `words` by leaving words out, for which `shows` still holds.
// It holds for `words`.
std::vector<Word> shrunk(std::vector<Word> words,
                         const std::function<bool(const std::vector<Word>&)>& shows);

} // namespace walk
