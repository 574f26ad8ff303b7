#pragma once

#include <norvex/client/PipelineUtility.h>

#include "SessionProxy.h"

class PipelineUtilityProxy final : public SessionProxy<IPipelineUtility> {
public:
    using SessionProxy::SessionProxy;

    int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                            const std::uint64_t& serviceId) override;
    int RegisterForStateChange(EStateChangeType type, const std::string& receiver,
                               int option) override;
    int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) override;
    int CheckPendingState(EStateChangeType type, bool* pending) override;
    int GetCurrentTPMSStatus(TCTPMSStatus* status) override;
    int NotifyReadyForSetService(int type, const std::string& application, int state,
                                 const std::uint64_t& serviceId) override;
};
