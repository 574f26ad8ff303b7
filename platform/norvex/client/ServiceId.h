#pragma once

#include <cstdint>

// The service id that no service has: all bits set.
constexpr std::uint64_t INVALID_SERVICE_ID = 0xFFFFFFFFFFFFFFFFULL;
