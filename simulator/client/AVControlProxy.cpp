#include "AVControlProxy.h"

int AVControlProxy::RestartVideoDecoder() {
    RemoteCall call(GetSession());
    return call.Make("RestartVideoDecoder", 0);
}

int AVControlProxy::MuteVideo(int value) {
    RemoteCall call(GetSession());
    call.In(value);
    return call.Make("MuteVideo", 1);
}

int AVControlProxy::MuteAudio(int value) {
    RemoteCall call(GetSession());
    call.In(value);
    return call.Make("MuteAudio", 2);
}
