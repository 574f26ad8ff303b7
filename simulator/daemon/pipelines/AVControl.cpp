#include <cinttypes>

#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Results.h"

namespace sim {

namespace {

// IAVControl: sound and picture.
class AVControl : public PipelineInterface {
public:
    using Method = interfaces::AVControlMethod;

    AVControl(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines) {
        Add(Method::RestartVideoDecoder, {Out("status", kInt)}, &AVControl::RestartVideoDecoder);
        Add(Method::MuteVideo, {Out("status", kInt), In("value", kInt)}, &AVControl::MuteVideo);
        Add(Method::MuteAudio, {Out("status", kInt), In("value", kInt)}, &AVControl::MuteAudio);
    }

private:
    void RestartVideoDecoder(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        ++pipeline.decoderRestarts;
        m_pipelines.NoteEvent(pipeline, SI_EVENT_DECODER_RESTARTED);
        m_log.Write("tvvideodec", "pipeline %s: decoder restarted, %" PRIu32 " times so far", pipeline.name.c_str(),
                    pipeline.decoderRestarts);
        m_pipelines.NoteVideo(pipeline);
        m_pipelines.NoteFrames(pipeline);
        out.Int(0, kDone);
    }

    // Values are stored as received: the sink decides what a number above 1 means.
    void MuteVideo(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        pipeline.videoMute = in.Int(1);
        m_log.Write("tvvideosink", "pipeline %s: mute %d", pipeline.name.c_str(), pipeline.videoMute);
        m_pipelines.NoteVideo(pipeline);
        out.Int(0, kDone);
    }

    void MuteAudio(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        pipeline.audioMute = in.Int(1);
        m_log.Write("tvaudiosink", "pipeline %s: mute %d", pipeline.name.c_str(), pipeline.audioMute);
        m_pipelines.NoteAudio(pipeline);
        out.Int(0, kDone);
    }
};

} // namespace

void RegisterAVControl(Context& context, Pipelines& pipelines) {
    context.Register<AVControl>(context, pipelines);
}

} // namespace sim
