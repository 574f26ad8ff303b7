#include <base/Debug.h>
#include <base/Log.h>

namespace sim {

// Names fit the column in which consoles show them (17 characters). None has a tag that is stopped
// on a new TV.
const std::array<DebugPart, kDebugItems + kDebugModes> kDebugParts{{
    {"Tuner lock", kTunerTag},
    {"Section filter", "tvdemuxer"},
    {"Channel change", kTunerTag},
    {"Service list", kTunerTag},
    {"Signal queue", kOwnTag},
    {"Video decoder", "tvvideodec"},
    {"Audio decoder", "tvaudiodec"},
    {"Captions", "tvdemuxer"},
    {"Zoom windows", "tvfpaparser"},
    {"Crop video", "tvvideodec"},
    {"Scan progress", kTunerTag},
    {"Preparation", kOwnTag},
    {"HDMI input", "extvideosrc"},
    {"Sessions", kOwnTag},
    {"Database access", kOwnTag},
    {"Memory use", kOwnTag},
    {"trace", kOwnTag},
    {"timing", kOwnTag},
    {"frames", "tvvideosink"},
    {"dry-run", kOwnTag},
}};

} // namespace sim
