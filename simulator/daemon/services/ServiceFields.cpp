#include "ServiceFields.h"

#include <algorithm>
#include <array>

#include <norvex/client/CriteriaHelper.h>

namespace sim {

namespace {

constexpr std::array<ServiceField, 9> kFields{{
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

} // namespace

const ServiceField* FindServiceField(std::int32_t number) {
    const auto* const found =
        std::find_if(kFields.begin(), kFields.end(),
                     [number](const ServiceField& field) { return field.number == number; });
    return found == kFields.end() ? nullptr : found;
}

} // namespace sim
