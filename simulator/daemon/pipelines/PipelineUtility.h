#pragma once

#include "PipelineInterface.h"
#include "Preparation.h"

namespace sim {

// com.holvi.IPipelineUtility: changes that wait for their receivers, and the pipelines' status.
class PipelineUtility : public PipelineInterface {
public:
    PipelineUtility(Context& context, Pipelines& pipelines, Preparation& preparation);

private:
    void NotifyReceiverState(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void RegisterForStateChange(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void UnregisterFromStateChange(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void CheckPendingState(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetCurrentTPMSStatus(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void NotifyReadyForSetService(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    Preparation& m_preparation;
};

} // namespace sim
