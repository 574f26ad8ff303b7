#include "LineUp.h"

#include <array>

#include <base/Number.h>

namespace sim {

namespace {

// By antenna mode.
const std::array<const char*, 3> kAntennaWords{"air", "cable", "satellite"};

} // namespace

std::string ToAntennaName(std::int32_t antenna) {
    if (antenna >= 0 && static_cast<std::size_t>(antenna) < kAntennaWords.size())
        return kAntennaWords[static_cast<std::size_t>(antenna)];
    return std::to_string(antenna);
}

std::string Transponder::ToText() const {
    std::string word = ToAntennaName(antenna);
    if (frequency != 0)
        word += "/" + std::to_string(frequency);
    return word;
}

std::optional<Transponder> ParseTransponder(const std::string& word) {
    const std::size_t slash = word.find('/');
    const std::string antenna = word.substr(0, slash);
    Transponder transponder{-1, 0};
    for (std::size_t place = 0; place < kAntennaWords.size(); ++place) {
        if (antenna == kAntennaWords[place])
            transponder.antenna = static_cast<std::int32_t>(place);
    }
    if (transponder.antenna < 0)
        return {};
    if (slash != std::string::npos &&
        (!ParseNumber(word.substr(slash + 1), transponder.frequency) || transponder.frequency <= 0))
        return {};
    return transponder;
}

std::uint64_t ToSignalData(const ServiceFacts& facts) {
    return std::uint64_t{static_cast<std::uint16_t>(facts.channelType)} |
           std::uint64_t{static_cast<std::uint16_t>(facts.profile)} << 16 |
           std::uint64_t{static_cast<std::uint16_t>(facts.major)} << 32;
}

} // namespace sim
