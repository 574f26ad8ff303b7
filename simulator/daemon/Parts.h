#pragma once

#include <cstdint>

namespace sim {

class Chassis;

// What the TV is made of. Here, and only here, a new part is mounted.
struct Options {
    std::uint32_t items = 0; // debug menu items beside the built-in ones
};
void MountParts(Chassis& chassis, const Options& options);

} // namespace sim
