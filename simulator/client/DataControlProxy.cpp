#include "DataControlProxy.h"

int DataControlProxy::CheckCaptionExist(bool* exists) {
    if (exists == nullptr)
        return -1;
    RemoteCall call(GetSession());
    Flag existsFlag(*exists);
    call.Out(existsFlag.byte);
    return call.Make("CheckCaptionExist", 0);
}
