#pragma once

#include <norvex/client/VideoControl.h>

#include "SessionProxy.h"

class VideoControlProxy final : public SessionProxy<IVideoControl> {
public:
    using SessionProxy::SessionProxy;

    int SetCropVideo(TSRectInfo first, TSRectInfo second) override;
    int SetWindowId(int* windowId) override;
};
