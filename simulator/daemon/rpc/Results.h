#pragma once

#include <cstdint>

namespace sim {

// What operations answer. Above 0 is success; below 0 tells why not, and a log line says more.
// Factories answer 0 on success.
constexpr std::int32_t kDone = 1;
constexpr std::int32_t kRefused = -1;     // not as things stand
constexpr std::int32_t kUnknown = -2;     // what it names is not there
constexpr std::int32_t kBadArgument = -3; // malformed, or out of range
constexpr std::int32_t kTooMany = -4;     // a limit is reached
constexpr std::int32_t kNotKept = -5;     // the database would not take it, or give it

} // namespace sim
