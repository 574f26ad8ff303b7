#include "TunerControl.h"

#include "Results.h"

namespace sim {

TunerControl::TunerControl(Context& context, Pipelines& pipelines)
    : PipelineInterface("com.holvi.ITunerControl", context, pipelines) {
    Add("CheckTunerSignalState", {Out("status", kInt)}, &TunerControl::CheckTunerSignalState);
}

void TunerControl::CheckTunerSignalState(const Call& call, const ArgumentReader&,
                                         ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    const bool signal = m_pipelines.HasSignal(pipeline);
    m_log.Write("tvtunerinfosrc", "pipeline %s: %s at %s", pipeline.word.c_str(),
                signal ? "signal" : "no signal", pipeline.tuner.ToText().c_str());
    // 0: no signal, which is an answer and no refusal.
    out.Int(0, signal ? kDone : 0);
}

} // namespace sim
