#pragma once

// Inputs of the TV. Valid numbers are 0 to 47; those without a name here exist on some models only.
enum ESource : int {
    SOURCE_TV = 0,
    SOURCE_COMPONENT1 = 7,
    SOURCE_HDMI1 = 13,
    SOURCE_HDMI2 = 14,
    SOURCE_HDMI3 = 15,
    SOURCE_HDMI4 = 16,
    SOURCE_HDMI5 = 38,
    SOURCE_HDMI6 = 39,
    SOURCE_HDMI7 = 46,
    SOURCE_HDMI8 = 47,
};
