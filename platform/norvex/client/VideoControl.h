#pragma once

#include <norvex/client/NorvexSession.h>
#include <norvex/client/RectInfo.h>

// Position and crop of a pipeline's picture.
class NORVEX_API IVideoControl : public INorvexSession {
public:
    virtual int SetCropVideo(TSRectInfo first, TSRectInfo second) = 0;
    // Binds the picture to the viewer's window.
    virtual int SetWindowId(int* windowId) = 0;
};
