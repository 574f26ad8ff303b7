#include <cinttypes>

#include <norvex/client/Source.h>

#include "Inputs.h"
#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Preparation.h"
#include "Results.h"

namespace sim {

namespace {

constexpr std::int32_t kLastSource = 47;
// Maximum of recorded calls of A, B and C; the oldest are dropped.
constexpr std::size_t kMaxPrepared = 16;

// ISourceControl: which input a pipeline shows.
class SourceControl : public PipelineInterface {
public:
    using Method = interfaces::SourceControlMethod;

    SourceControl(Context& context, Pipelines& pipelines, Preparation& preparation, const Inputs& inputs)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines), m_preparation(preparation),
          m_inputs(inputs) {
        Add(Method::SetSource, {Out("status", kInt), In("source", kInt), In("text", kText)}, &SourceControl::SetSource);
        Add(Method::SetSource_Service,
            {Out("status", kInt), In("source", kInt), In("service", kNumber64), In("text", kText)},
            &SourceControl::SetSourceAndService);
        Add(Method::PreSetSourceA, {Out("status", kInt)}, &SourceControl::PreSetSourceA);
        Add(Method::StartHDMIAnalysis, {Out("status", kInt), In("source", kInt)}, &SourceControl::StartHDMIAnalysis);
        Add(Method::StopHDMIAnalysis, {Out("status", kInt), In("source", kInt)}, &SourceControl::StopHDMIAnalysis);
        // C comes before B.
        Add(Method::PreSetSourceC, {Out("status", kInt)}, &SourceControl::PreSetSourceC);
        Add(Method::PreSetSourceB, {Out("status", kInt)}, &SourceControl::PreSetSourceB);
        Add(Method::SetPreviewSource, {Out("status", kInt), In("source", kInt), In("text", kText)},
            &SourceControl::SetPreviewSource);
        Add(Method::SetPreviewSource_Service,
            {Out("status", kInt), In("source", kInt), In("service", kNumber64), In("text", kText)},
            &SourceControl::SetPreviewSourceAndService);
    }

private:
    void SetSource(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const std::int32_t source = in.Int(1);
        const std::int32_t status = CheckSource(PipelineOf(call), "SetSource", source);
        if (status == kDone) {
            Change change;
            change.sequence = call.sequence;
            change.source = source;
            m_preparation.Request(HandleOf(call), change);
        }
        out.Int(0, status);
    }

    void SetSourceAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        const std::int32_t source = in.Int(1);
        const std::uint64_t service = in.Number64(2);
        const std::int32_t status = CheckSourceAndService(pipeline, "SetSource", source, service);
        if (status == kDone) {
            Change change;
            change.sequence = call.sequence;
            // A change of only the service does not concern receivers of source changes.
            if (source != pipeline.source)
                change.source = source;
            change.service = service;
            m_preparation.Request(HandleOf(call), change);
        }
        out.Int(0, status);
    }

    void PreSetSourceA(const Call& call, const ArgumentReader&, ReplyWriter& out) { PreSetSource(call, 'A', out); }

    void StartHDMIAnalysis(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t source = in.Int(1);
        const std::int32_t status = CheckHdmi(pipeline, "StartHDMIAnalysis", source);
        if (status == kDone) {
            const bool started = pipeline.hdmiAnalysis.emplace(source, call.client.GetNumber()).second;
            m_log.Write("extvideosrc", "pipeline %s: analysis of source %d %s", pipeline.name.c_str(), source,
                        started ? "started" : "already running");
            NoteAnalysis(pipeline);
        }
        out.Int(0, status);
    }

    void StopHDMIAnalysis(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t source = in.Int(1);
        std::int32_t status = CheckHdmi(pipeline, "StopHDMIAnalysis", source);
        if (status == kDone && pipeline.hdmiAnalysis.erase({source, call.client.GetNumber()}) == 0) {
            m_log.Write("extvideosrc",
                        "pipeline %s: StopHDMIAnalysis refused: source %d is not analysed by client %" PRIu32,
                        pipeline.name.c_str(), source, call.client.GetNumber());
            status = kRefused;
        } else if (status == kDone) {
            m_log.Write("extvideosrc", "pipeline %s: analysis of source %d stopped", pipeline.name.c_str(), source);
            NoteAnalysis(pipeline);
        }
        out.Int(0, status);
    }

    void PreSetSourceC(const Call& call, const ArgumentReader&, ReplyWriter& out) { PreSetSource(call, 'C', out); }

    void PreSetSourceB(const Call& call, const ArgumentReader&, ReplyWriter& out) { PreSetSource(call, 'B', out); }

    void SetPreviewSource(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t source = in.Int(1);
        const std::int32_t status = CheckSource(pipeline, "SetPreviewSource", source);
        if (status == kDone)
            SetPreview(pipeline, {source});
        out.Int(0, status);
    }

    void SetPreviewSourceAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t source = in.Int(1);
        const std::uint64_t service = in.Number64(2);
        const std::int32_t status = CheckSourceAndService(pipeline, "SetPreviewSource", source, service);
        if (status == kDone)
            SetPreview(pipeline, {source, service});
        out.Int(0, status);
    }

    // An input with nothing plugged in can be shown, without a picture.
    std::int32_t CheckSource(const Pipeline& pipeline, const char* operation, std::int32_t source) {
        if (source >= 0 && source <= kLastSource)
            return kDone;
        return m_log.Refuse(kUnknown, "extvideosrc", "pipeline %s: %s refused: unknown source %d",
                            pipeline.name.c_str(), operation, source);
    }

    // Only the tuner has services.
    std::int32_t CheckSourceAndService(const Pipeline& pipeline, const char* operation, std::int32_t source,
                                       std::uint64_t service) {
        const std::int32_t status = CheckSource(pipeline, operation, source);
        if (status != kDone)
            return status;
        if (source != SOURCE_TV)
            return m_log.Refuse(kBadArgument, "extvideosrc",
                                "pipeline %s: %s refused: source %d has no services, only %d (the tuner) has",
                                pipeline.name.c_str(), operation, source, SOURCE_TV);
        return m_pipelines.CheckService(pipeline, operation, service, pipeline.tvMode.antenna);
    }

    std::int32_t CheckHdmi(const Pipeline& pipeline, const char* operation, std::int32_t source) {
        const char* why = nullptr;
        if (!Inputs::IsHdmi(source))
            why = "is not an HDMI input";
        else if (!m_inputs.IsPlugged(source))
            why = "has nothing plugged in";
        if (why == nullptr)
            return kDone;
        m_log.Write("extvideosrc", "pipeline %s: %s refused: source %d %s", pipeline.name.c_str(), operation, source,
                    why);
        return Inputs::IsHdmi(source) ? kRefused : kBadArgument;
    }

    void NoteAnalysis(const Pipeline& pipeline) {
        m_log.WriteDebug(Debug::HdmiInput, "pipeline %s: %zu analyses are running", pipeline.name.c_str(),
                         pipeline.hdmiAnalysis.size());
    }

    void PreSetSource(const Call& call, char which, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        if (pipeline.preparedNext.size() == kMaxPrepared)
            pipeline.preparedNext.erase(0, 1);
        pipeline.preparedNext += which;
        m_log.Write("extvideosrc", "pipeline %s: prepared for a source, %c", pipeline.name.c_str(), which);
        out.Int(0, kDone);
    }

    // A preview does not replace the picture: no receiver prepares for it.
    void SetPreview(Pipeline& pipeline, const Preview& preview) {
        pipeline.preview = preview;
        m_log.Write("extvideosrc", "pipeline %s: preview of source %d, service 0x%" PRIx64, pipeline.name.c_str(),
                    preview.source, preview.service);
    }

    Preparation& m_preparation;
    const Inputs& m_inputs;
};

} // namespace

void RegisterSourceControl(Context& context, Pipelines& pipelines, Preparation& preparation, const Inputs& inputs) {
    context.Register<SourceControl>(context, pipelines, preparation, inputs);
}

} // namespace sim
