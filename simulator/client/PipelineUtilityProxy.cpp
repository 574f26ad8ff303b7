#include <norvex/client/NorvexAPI.h>
#include <norvex/client/PipelineUtility.h>

#include "SessionProxy.h"

namespace {

class PipelineUtilityProxy final
    : public SessionProxy<IPipelineUtility, interfaces::PipelineUtilityMethod> {
public:
    using SessionProxy::SessionProxy;

    int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                            const std::uint64_t& serviceId) override {
        RemoteCall call(GetSession());
        call.In(type);
        call.In(receiver);
        call.In(state);
        call.In(serviceId);
        return call.Make(Method::NotifyReceiverState);
    }

    int RegisterForStateChange(EStateChangeType type, const std::string& receiver,
                               int option) override {
        RemoteCall call(GetSession());
        call.In(type);
        call.In(receiver);
        call.In(option);
        return call.Make(Method::RegisterForStateChange);
    }

    int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) override {
        RemoteCall call(GetSession());
        call.In(type);
        call.In(receiver);
        return call.Make(Method::UnregisterFromStateChange);
    }

    int CheckPendingState(EStateChangeType type, bool* pending) override {
        if (pending == nullptr)
            return -1;
        RemoteCall call(GetSession());
        call.In(type);
        Flag pendingFlag(*pending);
        call.Out(pendingFlag.byte);
        return call.Make(Method::CheckPendingState);
    }

    int GetCurrentTPMSStatus(TCTPMSStatus* status) override {
        if (status == nullptr)
            return -1;
        RemoteCall call(GetSession());
        call.Out(*status);
        return call.Make(Method::GetCurrentTPMSStatus);
    }

    int NotifyReadyForSetService(int type, const std::string& application, int state,
                                 const std::uint64_t& serviceId) override {
        RemoteCall call(GetSession());
        call.In(type);
        call.In(application);
        call.In(state);
        call.In(serviceId);
        return call.Make(Method::NotifyReadyForSetService);
    }
};

} // namespace

int NorvexAPI::CreatePipelineUtility(EProfile profile, int screen,
                                     IPipelineUtility** pipelineUtility) {
    return CreateSession<PipelineUtilityProxy>(profile, screen, pipelineUtility);
}
