#pragma once

#include "PipelineInterface.h"

namespace sim {

// com.holvi.IAVControl: sound and picture.
class AVControl : public PipelineInterface {
public:
    AVControl(Context& context, Pipelines& pipelines);

private:
    void RestartVideoDecoder(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void MuteVideo(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void MuteAudio(const Call& call, const ArgumentReader& in, ReplyWriter& out);
};

} // namespace sim
