#include "TunerControlProxy.h"

int TunerControlProxy::CheckTunerSignalState() {
    RemoteCall call(GetSession());
    return call.Make("CheckTunerSignalState", 0);
}
