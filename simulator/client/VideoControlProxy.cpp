#include <norvex/client/NorvexAPI.h>
#include <norvex/client/VideoControl.h>

#include "SessionProxy.h"

namespace {

class VideoControlProxy final : public SessionProxy<IVideoControl, interfaces::VideoControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int SetCropVideo(TSRectInfo first, TSRectInfo second) override {
        return Call(Method::SetCropVideo).In(first).In(second).Make();
    }

    int SetWindowId(int* windowId) override {
        if (windowId == nullptr)
            return -1;
        return Call(Method::SetWindowId).Out(*windowId).Make();
    }
};

} // namespace

int NorvexAPI::CreateVideoControl(EProfile profile, int screen, IVideoControl** videoControl) {
    return CreateSession<VideoControlProxy>(profile, screen, videoControl);
}
