#pragma once

#include <array>
#include <cstdint>

#include <norvex/client/CriteriaHelper.h>

// A service's record is encoded as a branch with a value per field, whose tag is the field's
// number; a field without a value has no bytes.
namespace values {

struct ServiceField {
    std::int32_t number;
    const char* name;
};

constexpr std::array<ServiceField, 9> kServiceFields{{
    {SERVICE_FIELD_CHANNEL_TYPE, "type"},
    {SERVICE_FIELD_PROFILE, "profile"},
    {SERVICE_FIELD_FREQUENCY, "frequency"},
    {SERVICE_FIELD_ID, "id"},
    {SERVICE_FIELD_MAJOR, "major"},
    {SERVICE_FIELD_MINOR, "minor"},
    {SERVICE_FIELD_LISTED, "listed"},
    {SERVICE_FIELD_HIDDEN, "hidden"},
    {SERVICE_FIELD_VIRTUAL_ANTENNA, "virtual_antenna"},
}};

// Null for an unknown field.
constexpr const ServiceField* FindServiceField(std::int32_t number) {
    for (const ServiceField& field : kServiceFields) {
        if (field.number == number)
            return &field;
    }
    return nullptr;
}

// Bytes of a field's value: ids have 64 bits unsigned, other numbers 32 bits signed.
constexpr std::uint32_t SizeOfServiceField(std::int32_t number) {
    return number == SERVICE_FIELD_ID ? 8 : 4;
}

} // namespace values
