#pragma once

namespace sim {

// The line-up of a TV that was given none, as a text.
extern const char kBuiltInLineUp[];

} // namespace sim
