#include <norvex/client/ServiceUtility.h>

namespace {

// Field 1 of the line-up's broadcast services.
enum DigitalChannelType : int { kDigitalAir = 1, kDigitalCable = 2, kDigitalSatellite = 3 };

// The operator's line-up, whose services have the operator profile.
constexpr auto kServiceModeOperator = static_cast<EServiceMode>(1);

} // namespace

int TCServiceUtility::AntennaModeToDigitalChannelType(EAntennaMode antennaMode) {
    switch (antennaMode) {
    case ANTENNA_AIR:
        return kDigitalAir;
    case ANTENNA_CABLE:
        return kDigitalCable;
    case ANTENNA_SATELLITE:
        return kDigitalSatellite;
    case ANTENNA_NONE:
        break;
    }
    return -1;
}

EServiceMode TCServiceUtility::ServiceProfileToServiceMode(EServiceProfile profile) {
    switch (profile) {
    case SERVICE_PROFILE_DEFAULT:
        return SERVICE_MODE_DEFAULT;
    case SERVICE_PROFILE_OPERATOR:
        return kServiceModeOperator;
    }
    return SERVICE_MODE_NONE;
}
