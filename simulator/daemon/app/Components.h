#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ServiceLineUp.h"

namespace sim {

class Context;

// What the TV is made of. Here, and only here, a new part is registered.
struct Options {
    std::uint32_t items = 0;            // debug menu items beside the built-in ones
    std::optional<LineUpSource> lineUp; // in place of the built-in one, or the database's
};
// False: `error` is one line.
bool RegisterComponents(Context& context, const Options& options, std::string& error);

} // namespace sim
