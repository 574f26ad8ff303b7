#include <norvex/client/AVControl.h>
#include <norvex/client/NorvexAPI.h>

#include "SessionProxy.h"

namespace {

class AVControlProxy final : public SessionProxy<IAVControl, interfaces::AVControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int RestartVideoDecoder() override { return Call(Method::RestartVideoDecoder).Make(); }

    int MuteVideo(int value) override { return Call(Method::MuteVideo).In(value).Make(); }

    int MuteAudio(int value) override { return Call(Method::MuteAudio).In(value).Make(); }
};

} // namespace

int NorvexAPI::CreateAVControl(EProfile profile, int screen, IAVControl** avControl) {
    return CreateSession<AVControlProxy>(profile, screen, avControl);
}
