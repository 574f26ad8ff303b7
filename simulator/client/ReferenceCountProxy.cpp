#include "ReferenceCountProxy.h"

int ReferenceCountProxy::GetReferenceCount(int* count) {
    if (count == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.Out(*count);
    return call.Make("GetReferenceCount", 0);
}
