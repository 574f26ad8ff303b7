#include "PipelineUtilityProxy.h"

#include "MarshalableText.h"

int PipelineUtilityProxy::NotifyReceiverState(EStateChangeType type, const std::string& receiver,
                                              int state, const std::uint64_t& serviceId) {
    RemoteCall call(GetSession());
    call.In(type);
    MarshalableText receiverArgument(receiver);
    call.InObject(receiverArgument);
    call.In(state);
    call.In(serviceId);
    return call.Make("NotifyReceiverState", 0);
}

int PipelineUtilityProxy::RegisterForStateChange(EStateChangeType type, const std::string& receiver,
                                                 int option) {
    RemoteCall call(GetSession());
    call.In(type);
    MarshalableText receiverArgument(receiver);
    call.InObject(receiverArgument);
    call.In(option);
    return call.Make("RegisterForStateChange", 1);
}

int PipelineUtilityProxy::UnregisterFromStateChange(EStateChangeType type,
                                                    const std::string& receiver) {
    RemoteCall call(GetSession());
    call.In(type);
    MarshalableText receiverArgument(receiver);
    call.InObject(receiverArgument);
    return call.Make("UnregisterFromStateChange", 2);
}

int PipelineUtilityProxy::CheckPendingState(EStateChangeType type, bool* pending) {
    if (pending == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.In(type);
    Flag pendingFlag(*pending);
    call.Out(pendingFlag.byte);
    return call.Make("CheckPendingState", 3);
}

int PipelineUtilityProxy::GetCurrentTPMSStatus(TCTPMSStatus* status) {
    if (status == nullptr)
        return -1;
    RemoteCall call(GetSession());
    call.OutObject(*status);
    return call.Make("GetCurrentTPMSStatus", 4);
}

int PipelineUtilityProxy::NotifyReadyForSetService(int type, const std::string& application,
                                                   int state, const std::uint64_t& serviceId) {
    RemoteCall call(GetSession());
    call.In(type);
    MarshalableText applicationArgument(application);
    call.InObject(applicationArgument);
    call.In(state);
    call.In(serviceId);
    return call.Make("NotifyReadyForSetService", 5);
}
