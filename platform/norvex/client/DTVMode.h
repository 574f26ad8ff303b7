#pragma once

// Which parts of a broadcast stream a pipeline processes.
enum EDTVMode : int {
    DTV_MODE_DEMUX_ONLY = 0,
    DTV_MODE_AUDIO_ONLY = 1,
    DTV_MODE_VIDEO_ONLY = 2,
    DTV_MODE_ALL = 3,
};
