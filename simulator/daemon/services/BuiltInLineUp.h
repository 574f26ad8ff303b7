#pragma once

namespace sim {

// The built-in line-up, as a text.
extern const char kBuiltInLineUp[];

} // namespace sim
