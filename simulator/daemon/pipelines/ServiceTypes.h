#pragma once

#include <cstdint>
#include <vector>

#include "ArgumentType.h"

namespace sim {

extern const ArgumentType kCriteria; // branch {0: array of conditions, 1: array of fetched fields}
extern const ArgumentType kRecord;   // branch {field number: value}
extern const ArgumentType kRecords;  // branch of records
extern const ArgumentType
    kServiceCodes; // branch {0: array of (64-bit service id, 32-bit code), packed}
extern const ArgumentType kProgramme; // branch {0: start, 1: duration, 2: array of title units}

// A service's field equals a value, or differs from it. As it travels.
struct Condition {
    std::int32_t differs = 0;
    std::int32_t field = 0;
    std::int32_t value = 0;
};

// What a client asks for: all conditions hold, and the fields that a record then brings.
struct Criteria {
    std::vector<Condition> conditions;
    std::vector<std::int32_t> fetched;
};

// Of nodes that fit the forms.
Criteria ReadCriteria(const wire::Node& node);
std::vector<std::uint64_t> ReadServiceIds(const wire::Node& node);

} // namespace sim
