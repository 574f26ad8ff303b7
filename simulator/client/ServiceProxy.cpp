#include "ServiceProxy.h"

int ServiceProxy::FindService(const TCCriteriaHelper& criteria, TCServiceData& record, int count) {
    RemoteCall call(GetSession());
    call.InObject(criteria);
    call.OutObject(record);
    call.In(count);
    return call.Make("FindService", 0);
}
