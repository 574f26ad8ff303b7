#include "DataControl.h"

#include "Results.h"

namespace sim {

DataControl::DataControl(Context& context, Pipelines& pipelines)
    : PipelineInterface("com.holvi.IDataControl", context, pipelines) {
    Add("CheckCaptionExist", {Out("status", kInt), Out("exists", kBool)},
        &DataControl::CheckCaptionExist);
}

void DataControl::CheckCaptionExist(const Call& call, const ArgumentReader&, ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    const bool captions = m_pipelines.HasCaptions(pipeline);
    m_log.Write("tvdemuxer", "pipeline %s: %s", pipeline.word.c_str(),
                captions ? "captions" : "no captions");
    out.Int(0, kDone);
    out.Bool(1, captions);
}

} // namespace sim
