#include "VideoControlProxy.h"

int VideoControlProxy::SetCropVideo(TSRectInfo first, TSRectInfo second) {
    RemoteCall call(GetSession());
    call.InObject(first);
    call.InObject(second);
    return call.Make("SetCropVideo", 0);
}

int VideoControlProxy::SetWindowId(int* windowId) {
    if (windowId == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.Out(*windowId);
    return call.Make("SetWindowId", 1);
}
