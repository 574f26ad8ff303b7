#pragma once

#include <string>

#include "Session.h"

namespace walk {

// The console as a whole in front of the fakes, in this process.
class Playback {
public:
    // Makes a directory that stands for the device's.
    Playback();
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    // Enters the console, types the words of the session and compares at each. Where the console
    // does something else, that is told on standard error and the process ends with `kDiffers`: the
    // console cannot be led out of where nobody knows it to be.
    void play(const Session& session);

    static constexpr int kDiffers = 3;

private:
    std::string m_directory;
};

} // namespace walk
