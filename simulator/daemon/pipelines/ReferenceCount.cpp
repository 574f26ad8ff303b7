#include "ReferenceCount.h"

#include "Results.h"

namespace sim {

ReferenceCount::ReferenceCount(Context& context, Pipelines& pipelines)
    : PipelineInterface("com.holvi.IReferenceCount", context, pipelines) {
    Add("GetReferenceCount", {Out("status", kInt), Out("count", kInt)},
        &ReferenceCount::GetReferenceCount);
}

void ReferenceCount::GetReferenceCount(const Call& call, const ArgumentReader&, ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    m_log.Write(kOwnTag, "pipeline %s: %d sessions", pipeline.word.c_str(), pipeline.sessions);
    out.Int(0, kDone);
    out.Int(1, pipeline.sessions);
}

} // namespace sim
