#pragma once

#include "PipelineInterface.h"
#include "Preparation.h"
#include "Inputs.h"

namespace sim {

// com.holvi.ISourceControl: which input a pipeline shows.
class SourceControl : public PipelineInterface {
public:
    SourceControl(Context& context, Pipelines& pipelines, Preparation& preparation,
                  const Inputs& inputs);

private:
    void SetSource(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetSourceAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void PreSetSourceA(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StartHDMIAnalysis(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StopHDMIAnalysis(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void PreSetSourceC(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void PreSetSourceB(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetPreviewSource(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetPreviewSourceAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    std::int32_t CheckSource(const Pipeline& pipeline, const char* operation, std::int32_t source);
    std::int32_t CheckHdmi(const Pipeline& pipeline, const char* operation, std::int32_t source);
    void PreSetSource(const Call& call, char which, ReplyWriter& out);
    void SetPreview(Pipeline& pipeline, const Preview& preview);

    Preparation& m_preparation;
    const Inputs& m_inputs;
};

} // namespace sim
