#pragma once

#include <cstdint>

namespace sim {

// Results of operations. Above 0 is success; below 0 is the reason of a refusal, with details in
// the log. Factories return 0 on success.
constexpr std::int32_t kDone = 1;
constexpr std::int32_t kRefused = -1;     // not possible in this state
constexpr std::int32_t kUnknown = -2;     // no such object
constexpr std::int32_t kBadArgument = -3; // malformed, or out of range
constexpr std::int32_t kTooMany = -4;     // a limit is reached
constexpr std::int32_t kNotKept = -5;     // the database could not be written or read

} // namespace sim
