#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ServiceLineUp.h"

namespace sim {

class Context;

// The TV's components. Register a new one here.
struct Options {
    std::string deviceDirectory;        // of the device's files; empty: none
    std::uint32_t items = 0;            // debug menu items in addition to the built-in ones
    std::optional<LineUpSource> lineUp; // in place of the built-in one, or the database's
};
// False: `error` is one line.
bool RegisterComponents(Context& context, const Options& options, std::string& error);

} // namespace sim
