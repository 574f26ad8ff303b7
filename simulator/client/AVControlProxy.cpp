#include <norvex/client/AVControl.h>
#include <norvex/client/NorvexAPI.h>

#include "SessionProxy.h"

namespace {

class AVControlProxy final : public SessionProxy<IAVControl, interfaces::AVControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int RestartVideoDecoder() override {
        RemoteCall call(GetSession());
        return call.Make(Method::RestartVideoDecoder);
    }

    int MuteVideo(int value) override {
        RemoteCall call(GetSession());
        call.In(value);
        return call.Make(Method::MuteVideo);
    }

    int MuteAudio(int value) override {
        RemoteCall call(GetSession());
        call.In(value);
        return call.Make(Method::MuteAudio);
    }
};

} // namespace

int NorvexAPI::CreateAVControl(EProfile profile, int screen, IAVControl** avControl) {
    return CreateSession<AVControlProxy>(profile, screen, avControl);
}
