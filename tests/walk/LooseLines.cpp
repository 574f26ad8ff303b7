#include "LooseLines.h"

namespace walk {

namespace {

bool isButForFrom(const std::vector<std::string>& loose, std::size_t first, const std::string& seen,
                  const std::string& expected) {
    if (first == loose.size())
        return seen == expected;
    const std::string& line = loose[first];
    for (std::size_t at = seen.find(line); at != std::string::npos; at = seen.find(line, at + 1)) {
        std::string rest = seen;
        rest.erase(at, line.size());
        if (isButForFrom(loose, first + 1, rest, expected))
            return true;
    }
    return false;
}

} // namespace

bool isButFor(const std::vector<std::string>& loose, const std::string& seen,
              const std::string& expected) {
    return isButForFrom(loose, 0, seen, expected);
}

} // namespace walk
