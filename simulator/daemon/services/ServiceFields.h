#pragma once

#include <cstdint>

namespace sim {

// A field of a service as queries and records number it, and where it is kept. The service id has
// 64 bits unsigned, all others 32 bits signed.
struct ServiceField {
    std::int32_t number;
    const char* column;
};

// Null: no service has such a field.
const ServiceField* FindServiceField(std::int32_t number);

} // namespace sim
