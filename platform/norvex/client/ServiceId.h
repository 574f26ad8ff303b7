#pragma once

#include <cstdint>

// The id of no service: all bits set.
constexpr std::uint64_t INVALID_SERVICE_ID = 0xFFFFFFFFFFFFFFFFULL;
