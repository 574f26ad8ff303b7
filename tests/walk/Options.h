#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Session.h"

namespace walk {

struct Options {
    // Words to be typed, and the time after which no further session is begun; 0 is no limit.
    long words = 6000;
    long seconds = 0;
    std::uint64_t seed = 1;
    // Words before a session begins to lead out.
    long session = 200;
    // Findings after which the walk is given up.
    long findings = 3;
    bool shrinks = true;
    bool tellsRows = false;
    // A row that was never visited is a finding, however short the walk.
    bool everyRow = false;

    // A single session with these words in place of a walk.
    bool replays = false;
    std::vector<Word> replay;

    // Where a walking process leaves word of how far it is; it is started with it by the one that
    // watches over it.
    std::string progress;
};

} // namespace walk
