#pragma once

#include <norvex/client/AVControl.h>

#include "SessionProxy.h"

class AVControlProxy final : public SessionProxy<IAVControl> {
public:
    using SessionProxy::SessionProxy;

    int RestartVideoDecoder() override;
    int MuteVideo(int value) override;
    int MuteAudio(int value) override;
};
