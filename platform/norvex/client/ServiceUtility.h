#pragma once

#include <norvex/client/TvMode.h>
#include <norvex/core/Export.h>

// Conversions between the line-up's numbers. They need no middleware.
class NORVEX_API TCServiceUtility {
public:
    // Channel type (field 1) of the digital broadcast on an antenna; -1 for an unknown antenna.
    static int AntennaModeToDigitalChannelType(EAntennaMode antennaMode);
    static EServiceMode ServiceProfileToServiceMode(EServiceProfile profile);
};
