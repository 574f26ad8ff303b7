#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Results.h"

namespace sim {

namespace {

// IDataControl: data received with a service.
class DataControl : public PipelineInterface {
public:
    using Method = interfaces::DataControlMethod;

    DataControl(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines) {
        Add(Method::CheckCaptionExist, {Out("status", kInt), Out("exists", kBool)}, &DataControl::CheckCaptionExist);
    }

private:
    void CheckCaptionExist(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        const bool captions = m_pipelines.HasCaptions(pipeline);
        m_log.Write("tvdemuxer", "pipeline %s: %s", pipeline.name.c_str(), captions ? "captions" : "no captions");
        out.Int(0, kDone);
        out.Bool(1, captions);
    }
};

} // namespace

void RegisterDataControl(Context& context, Pipelines& pipelines) {
    context.Register<DataControl>(context, pipelines);
}

} // namespace sim
