#include <norvex/client/NorvexAPI.h>
#include <norvex/client/PipelineUtility.h>

#include "SessionProxy.h"

namespace {

class PipelineUtilityProxy final : public SessionProxy<IPipelineUtility, interfaces::PipelineUtilityMethod> {
public:
    using SessionProxy::SessionProxy;

    int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                            const std::uint64_t& serviceId) override {
        return Call(Method::NotifyReceiverState).In(type).In(receiver).In(state).In(serviceId).Make();
    }

    int RegisterForStateChange(EStateChangeType type, const std::string& receiver, int option) override {
        return Call(Method::RegisterForStateChange).In(type).In(receiver).In(option).Make();
    }

    int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) override {
        return Call(Method::UnregisterFromStateChange).In(type).In(receiver).Make();
    }

    int CheckPendingState(EStateChangeType type, bool* pending) override {
        if (pending == nullptr)
            return -1;
        return Call(Method::CheckPendingState).In(type).Out(*pending).Make();
    }

    int GetCurrentTPMSStatus(TCTPMSStatus* status) override {
        if (status == nullptr)
            return -1;
        return Call(Method::GetCurrentTPMSStatus).Out(*status).Make();
    }

    int NotifyReadyForSetService(int type, const std::string& application, int state,
                                 const std::uint64_t& serviceId) override {
        return Call(Method::NotifyReadyForSetService).In(type).In(application).In(state).In(serviceId).Make();
    }
};

} // namespace

int NorvexAPI::CreatePipelineUtility(EProfile profile, int screen, IPipelineUtility** pipelineUtility) {
    return CreateSession<PipelineUtilityProxy>(profile, screen, pipelineUtility);
}
