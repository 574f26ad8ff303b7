#pragma once

#include "PipelineInterface.h"

namespace sim {

// com.holvi.ITunerControl: a pipeline's tuner.
class TunerControl : public PipelineInterface {
public:
    TunerControl(Context& context, Pipelines& pipelines);

private:
    void CheckTunerSignalState(const Call& call, const ArgumentReader& in, ReplyWriter& out);
};

} // namespace sim
