#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Results.h"

namespace sim {

namespace {

// IReferenceCount: the number of a pipeline's sessions, including the calling one.
class ReferenceCount : public PipelineInterface {
public:
    using Method = interfaces::ReferenceCountMethod;

    ReferenceCount(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines) {
        Add(Method::GetReferenceCount, {Out("status", kInt), Out("count", kInt)}, &ReferenceCount::GetReferenceCount);
    }

private:
    void GetReferenceCount(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        m_log.Write(kOwnTag, "pipeline %s: %d sessions", pipeline.name.c_str(), pipeline.sessions);
        out.Int(0, kDone);
        out.Int(1, pipeline.sessions);
    }
};

} // namespace

void RegisterReferenceCount(Context& context, Pipelines& pipelines) {
    context.Register<ReferenceCount>(context, pipelines);
}

} // namespace sim
