#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Results.h"

namespace sim {

namespace {

// ITunerControl: a pipeline's tuner.
class TunerControl : public PipelineInterface {
public:
    using Method = interfaces::TunerControlMethod;

    TunerControl(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines) {
        Add(Method::CheckTunerSignalState, {Out("status", kInt)}, &TunerControl::CheckTunerSignalState);
    }

private:
    void CheckTunerSignalState(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        const bool signal = m_pipelines.HasSignal(pipeline);
        m_log.Write(kTunerTag, "pipeline %s: %s at %s", pipeline.name.c_str(), signal ? "signal" : "no signal",
                    pipeline.GetTuner().ToText().c_str());
        // 0: no signal, which is not a refusal.
        out.Int(0, signal ? kDone : 0);
    }
};

} // namespace

void RegisterTunerControl(Context& context, Pipelines& pipelines) {
    context.Register<TunerControl>(context, pipelines);
}

} // namespace sim
