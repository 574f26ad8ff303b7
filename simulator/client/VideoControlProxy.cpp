#include <norvex/client/NorvexAPI.h>
#include <norvex/client/VideoControl.h>

#include "SessionProxy.h"

namespace {

class VideoControlProxy final : public SessionProxy<IVideoControl, interfaces::VideoControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int SetCropVideo(TSRectInfo first, TSRectInfo second) override {
        RemoteCall call(GetSession());
        call.In(first);
        call.In(second);
        return call.Make(Method::SetCropVideo);
    }

    int SetWindowId(int* windowId) override {
        if (windowId == nullptr)
            return -1;
        RemoteCall call(GetSession());
        call.Out(*windowId);
        return call.Make(Method::SetWindowId);
    }
};

} // namespace

int NorvexAPI::CreateVideoControl(EProfile profile, int screen, IVideoControl** videoControl) {
    return CreateSession<VideoControlProxy>(profile, screen, videoControl);
}
