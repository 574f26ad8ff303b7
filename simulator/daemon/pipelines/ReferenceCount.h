#pragma once

#include "PipelineInterface.h"

namespace sim {

// com.holvi.IReferenceCount: how many sessions hold a pipeline, the one that asks among them.
class ReferenceCount : public PipelineInterface {
public:
    ReferenceCount(Context& context, Pipelines& pipelines);

private:
    void GetReferenceCount(const Call& call, const ArgumentReader& in, ReplyWriter& out);
};

} // namespace sim
