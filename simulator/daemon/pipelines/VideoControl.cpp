#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Results.h"

namespace sim {

namespace {

// IVideoControl: where and what a picture shows.
class VideoControl : public PipelineInterface {
public:
    using Method = interfaces::VideoControlMethod;

    VideoControl(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines) {
        Add(Method::SetCropVideo, {Out("status", kInt), In("first", kRect), In("second", kRect)},
            &VideoControl::SetCropVideo);
        Add(Method::SetWindowId, {Out("status", kInt), InByPointer("windowId", kInt)}, &VideoControl::SetWindowId);
    }

private:
    void SetCropVideo(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const Crop crop{in.Value<Rect>(1), in.Value<Rect>(2)};
        if (!IsOnScreen(crop.first) || !IsOnScreen(crop.second))
            return out.Int(0, m_log.Refuse(kBadArgument, "tvvideodec",
                                           "pipeline %s: SetCropVideo refused: the %s rectangle is not on "
                                           "the screen",
                                           pipeline.name.c_str(), IsOnScreen(crop.first) ? "second" : "first"));
        if (pipeline.crop)
            m_log.WriteDebug(Debug::CropVideo, "pipeline %s: replaces %s and %s", pipeline.name.c_str(),
                             DescribeRect(pipeline.crop->first).c_str(), DescribeRect(pipeline.crop->second).c_str());
        else
            m_log.WriteDebug(Debug::CropVideo, "pipeline %s: replaces the whole picture", pipeline.name.c_str());
        pipeline.crop = crop;
        m_log.Write("tvvideodec", "pipeline %s: crop %s and %s", pipeline.name.c_str(),
                    DescribeRect(crop.first).c_str(), DescribeRect(crop.second).c_str());
        out.Int(0, kDone);
    }

    void SetWindowId(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t windowId = in.Int(1);
        if (windowId < 0)
            return out.Int(0, m_log.Refuse(kBadArgument, "tvvideosink",
                                           "pipeline %s: SetWindowId refused: %d is not a window",
                                           pipeline.name.c_str(), windowId));
        pipeline.windowId = windowId;
        m_log.Write("tvvideosink", "pipeline %s: window %d", pipeline.name.c_str(), windowId);
        out.Int(0, kDone);
    }
};

} // namespace

void RegisterVideoControl(Context& context, Pipelines& pipelines) {
    context.Register<VideoControl>(context, pipelines);
}

} // namespace sim
