#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

enum EAntennaMode : int {
    ANTENNA_NONE = -1,
    ANTENNA_AIR = 0,
    ANTENNA_CABLE = 1,
    ANTENNA_SATELLITE = 2,
};

// 0: the broadcast line-up; any other number: an operator's own line-up.
enum EServiceMode : int { SERVICE_MODE_NONE = -1, SERVICE_MODE_DEFAULT = 0 };

// Profile of a service in the line-up.
enum EServiceProfile : int { SERVICE_PROFILE_DEFAULT = 0, SERVICE_PROFILE_OPERATOR = 2 };

// Antenna mode and service mode. A value.
class NORVEX_API TSTvMode : public TCMarshalable {
public:
    // Both fields -1: whatever the TV has now.
    TSTvMode();
    TSTvMode(EAntennaMode antennaMode, EServiceMode serviceMode);
    TSTvMode(const TSTvMode& other);
    TSTvMode& operator=(const TSTvMode& other);
    ~TSTvMode() override;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

    EAntennaMode m_antennaMode;
    EServiceMode m_serviceMode;
};
