#pragma once

#include <cstdint>
#include <string>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/TPMSStatus.h>

enum EStateChangeType : int {
    STATE_CHANGE_SERVICE = 0,
    STATE_CHANGE_SOURCE = 1,
};

// State changes of a pipeline that wait for their receivers, and the pipelines' status.
class NORVEX_API IPipelineUtility : public INorvexSession {
public:
    // Reports that the receiver is in `state` (1: ready) for a change of that kind to that service;
    // all bits set means any service.
    virtual int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                                    const std::uint64_t& serviceId) = 0;
    // From now on changes of that kind wait for the receiver. `option` is 0.
    virtual int RegisterForStateChange(EStateChangeType type, const std::string& receiver, int option) = 0;
    virtual int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) = 0;
    virtual int CheckPendingState(EStateChangeType type, bool* pending) = 0;
    virtual int GetCurrentTPMSStatus(TCTPMSStatus* status) = 0;
    // Reports that the application is ready for the change to that service. `state` is 1.
    virtual int NotifyReadyForSetService(int type, const std::string& application, int state,
                                         const std::uint64_t& serviceId) = 0;
};
