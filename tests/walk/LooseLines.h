#pragma once

#include <string>
#include <vector>

namespace walk {

// Whether `seen` is `expected` once each of the lines in `loose` has been taken out, wherever it
// stands. A line may also stand in `expected`: then it is seen once more.
bool isButFor(const std::vector<std::string>& loose, const std::string& seen,
              const std::string& expected);

} // namespace walk
