#include <optional>

#include <norvex/client/DTVMode.h>
#include <norvex/client/Source.h>
#include <norvex/client/TvMode.h>

#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Preparation.h"
#include "Results.h"

namespace sim {

namespace {

// IServiceNavigation: tunes a pipeline, and lists the line-up.
class ServiceNavigation : public PipelineInterface {
public:
    using Method = interfaces::ServiceNavigationMethod;

    ServiceNavigation(Context& context, LineUp& lineUp, Pipelines& pipelines, Preparation& preparation)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines), m_lineUp(lineUp),
          m_preparation(preparation) {
        Add(Method::GetTvMode, {Out("status", kInt), Out("tvMode", kTvMode)}, &ServiceNavigation::GetTvMode);
        Add(Method::GetServiceList,
            {Out("status", kInt), In("criteria", kCriteria), Out("records", kRecordList), In("tvMode", kTvMode),
             In("first", kInt), In("count", kInt)},
            &ServiceNavigation::GetServiceList);
        Add(Method::SetTvMode, {Out("status", kInt), In("tvMode", kTvMode), In("text", kText)},
            &ServiceNavigation::SetTvMode);
        Add(Method::SetTvMode_Service,
            {Out("status", kInt), In("tvMode", kTvMode), In("service", kNumber64), In("text", kText)},
            &ServiceNavigation::SetTvModeAndService);
        Add(Method::SetDTVMode, {Out("status", kInt), In("mode", kInt), In("enable", kBool)},
            &ServiceNavigation::SetDTVMode);
        Add(Method::SetService,
            {Out("status", kInt), In("service", kNumber64), In("option", kInt), In("flags", kInt), In("text", kText)},
            &ServiceNavigation::SetService);
        Add(Method::SetBootupService,
            {Out("status", kInt), In("service", kNumber64), In("tvMode", kTvMode), In("option", kInt)},
            &ServiceNavigation::SetBootupService);
        Add(Method::GetLatestVeldaServiceId, {Out("status", kInt), Out("service", kNumber64), In("tvMode", kTvMode)},
            &ServiceNavigation::GetLatestVeldaServiceId);
        Add(Method::GetLatestServiceId, {Out("status", kInt), Out("service", kNumber64), In("tvMode", kTvMode)},
            &ServiceNavigation::GetLatestServiceId);
    }

private:
    void GetTvMode(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        out.Int(0, kDone);
        out.Value(1, PipelineOf(call).tvMode);
    }

    void GetServiceList(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        ChannelList* list = m_lineUp.GetChannelList();
        if (list == nullptr)
            return RefuseWithoutLineUp("GetServiceList", out);
        auto tvMode = in.Value<TvMode>(3);
        if (!Complete(PipelineOf(call), "GetServiceList", tvMode))
            return out.Int(0, kBadArgument);
        list->List(in.Value<values::Criteria>(1), tvMode, in.Int(4), in.Int(5), out);
    }

    // Without a service: returns to the service last shown in that mode.
    void SetTvMode(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        auto tvMode = in.Value<TvMode>(1);
        if (!Complete(pipeline, "SetTvMode", tvMode))
            return out.Int(0, kBadArgument);
        const auto latest = pipeline.latest.find(tvMode);
        const std::uint64_t service = latest == pipeline.latest.end() ? INVALID_SERVICE_ID : latest->second.broadcast;
        out.Int(0, kDone);
        if (tvMode == pipeline.tvMode && service == pipeline.service) {
            // Not a change, so it does not replace a pending one.
            m_log.Write(kTunerTag, "pipeline %s: SetTvMode changes nothing", pipeline.name.c_str());
            return;
        }
        Change change;
        change.sequence = call.sequence;
        change.tvMode = tvMode;
        change.service = service;
        m_preparation.Request(HandleOf(call), change);
    }

    void SetTvModeAndService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        auto tvMode = in.Value<TvMode>(1);
        if (!Complete(pipeline, "SetTvMode", tvMode))
            return out.Int(0, kBadArgument);
        const std::uint64_t service = in.Number64(2);
        const std::int32_t status = m_pipelines.CheckService(pipeline, "SetTvMode", service, tvMode.antenna);
        if (status == kDone)
            Show(call, service, tvMode);
        out.Int(0, status);
    }

    void SetDTVMode(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        Pipeline& pipeline = ToChange(call);
        const std::int32_t mode = in.Int(1);
        const bool enable = in.Bool(2);
        if (mode < DTV_MODE_DEMUX_ONLY || mode > DTV_MODE_ALL)
            return out.Int(0,
                           m_log.Refuse(kBadArgument, "tvdemuxer", "pipeline %s: SetDTVMode refused: unknown mode %d",
                                        pipeline.name.c_str(), mode));
        DtvModes& modes = pipeline.dtvModes;
        if (mode == DTV_MODE_DEMUX_ONLY || mode == DTV_MODE_ALL)
            modes.demux = enable;
        if (mode == DTV_MODE_AUDIO_ONLY || mode == DTV_MODE_ALL)
            modes.audio = enable;
        if (mode == DTV_MODE_VIDEO_ONLY || mode == DTV_MODE_ALL)
            modes.video = enable;
        m_log.Write("tvdemuxer", "pipeline %s: DTV mode %d %s", pipeline.name.c_str(), mode, enable ? "on" : "off");
        m_pipelines.NoteVideo(pipeline);
        m_pipelines.NoteAudio(pipeline);
        out.Int(0, kDone);
    }

    void SetService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        const std::uint64_t service = in.Number64(1);
        const std::int32_t status = m_pipelines.CheckService(pipeline, "SetService", service, pipeline.tvMode.antenna);
        if (status == kDone)
            Show(call, service, {});
        out.Int(0, status);
    }

    void SetBootupService(const Call&, const ArgumentReader& in, ReplyWriter& out) {
        ChannelList* list = m_lineUp.GetChannelList();
        if (list == nullptr)
            return RefuseWithoutLineUp("SetBootupService", out);
        out.Int(0, list->SetBootupService(in.Number64(1), in.Value<TvMode>(2), in.Int(3)));
    }

    void GetLatestVeldaServiceId(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        GetLatest(call, in, "GetLatestVeldaServiceId", "streamed", &Latest::streamed, out);
    }

    void GetLatestServiceId(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        GetLatest(call, in, "GetLatestServiceId", "broadcast", &Latest::broadcast, out);
    }

    // Fields of -1 mean the pipeline's current values. False, with a line in the log, for an
    // unknown mode.
    bool Complete(const Pipeline& pipeline, const char* operation, TvMode& tvMode) {
        if (tvMode.antenna == ANTENNA_NONE)
            tvMode.antenna = pipeline.tvMode.antenna;
        if (tvMode.serviceMode == SERVICE_MODE_NONE)
            tvMode.serviceMode = pipeline.tvMode.serviceMode;
        if (tvMode.antenna >= ANTENNA_AIR && tvMode.antenna <= ANTENNA_SATELLITE && tvMode.serviceMode >= 0)
            return true;
        m_log.Write(kTunerTag, "pipeline %s: %s refused: unknown antenna %d or service mode %d", pipeline.name.c_str(),
                    operation, tvMode.antenna, tvMode.serviceMode);
        return false;
    }

    // Showing a service switches to the tuner, whatever the current source.
    void Show(const Call& call, std::uint64_t service, const std::optional<TvMode>& tvMode) {
        Change change;
        change.sequence = call.sequence;
        change.tvMode = tvMode;
        change.service = service;
        if (PipelineOf(call).source != SOURCE_TV)
            change.source = SOURCE_TV;
        m_preparation.Request(HandleOf(call), change);
    }

    void GetLatest(const Call& call, const ArgumentReader& in, const char* operation, const char* kindName,
                   std::uint64_t Latest::*kind, ReplyWriter& out) {
        const Pipeline& pipeline = PipelineOf(call);
        auto tvMode = in.Value<TvMode>(2);
        if (!Complete(pipeline, operation, tvMode))
            return out.Int(0, kBadArgument);
        const auto latest = pipeline.latest.find(tvMode);
        if (latest == pipeline.latest.end() || latest->second.*kind == INVALID_SERVICE_ID)
            return out.Int(0, m_log.Refuse(kUnknown, kTunerTag,
                                           "pipeline %s: %s refused: the line-up has no %s service that was shown with "
                                           "antenna %s, service mode %d",
                                           pipeline.name.c_str(), operation, kindName,
                                           ToAntennaName(tvMode.antenna).c_str(), tvMode.serviceMode));
        out.Int(0, kDone);
        out.Number64(1, latest->second.*kind);
    }

    void RefuseWithoutLineUp(const char* operation, ReplyWriter& out) {
        m_log.Write(kTunerTag, "%s refused: no line-up", operation);
        out.Int(0, kRefused);
    }

    LineUp& m_lineUp;
    Preparation& m_preparation;
};

} // namespace

void RegisterServiceNavigation(Context& context, LineUp& lineUp, Pipelines& pipelines, Preparation& preparation) {
    context.Register<ServiceNavigation>(context, lineUp, pipelines, preparation);
}

} // namespace sim
