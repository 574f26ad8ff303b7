#pragma once

#include "PipelineInterface.h"

namespace sim {

// com.holvi.IVideoControl: where and what a picture shows.
class VideoControl : public PipelineInterface {
public:
    VideoControl(Context& context, Pipelines& pipelines);

private:
    void SetCropVideo(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetWindowId(const Call& call, const ArgumentReader& in, ReplyWriter& out);
};

} // namespace sim
