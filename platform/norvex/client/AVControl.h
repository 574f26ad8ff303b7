#pragma once

#include <norvex/client/NorvexSession.h>

// Sound and picture of a pipeline.
class NORVEX_API IAVControl : public INorvexSession {
public:
    virtual int RestartVideoDecoder() = 0;
    // 0: off, 1: on.
    virtual int MuteVideo(int value) = 0;
    virtual int MuteAudio(int value) = 0;
};
