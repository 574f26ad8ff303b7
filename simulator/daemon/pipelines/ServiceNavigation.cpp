#include "ServiceNavigation.h"

#include <norvex/client/DTVMode.h>
#include <norvex/client/Source.h>
#include <norvex/client/TvMode.h>

#include "PipelineTypes.h"
#include "Results.h"
#include "ServiceTypes.h"

namespace sim {

ServiceNavigation::ServiceNavigation(Context& context, LineUp& lineUp, Pipelines& pipelines,
                                     Preparation& preparation)
    : PipelineInterface("com.holvi.IServiceNavigation", context, pipelines), m_lineUp(lineUp),
      m_preparation(preparation) {
    Add("GetTvMode", {Out("status", kInt), Out("tvMode", kTvMode)}, &ServiceNavigation::GetTvMode);
    Add("GetServiceList",
        {Out("status", kInt), In("criteria", kCriteria), Out("records", kRecords),
         In("tvMode", kTvMode), In("first", kInt), In("count", kInt)},
        &ServiceNavigation::GetServiceList);
    Add("SetTvMode", {Out("status", kInt), In("tvMode", kTvMode), In("text", kText)},
        &ServiceNavigation::SetTvMode);
    Add("SetTvMode",
        {Out("status", kInt), In("tvMode", kTvMode), In("service", kNumber64), In("text", kText)},
        &ServiceNavigation::SetTvModeAndService);
    Add("SetDTVMode", {Out("status", kInt), In("mode", kInt), In("enable", kBool)},
        &ServiceNavigation::SetDTVMode);
    Add("SetService",
        {Out("status", kInt), In("service", kNumber64), In("option", kInt), In("flags", kInt),
         In("text", kText)},
        &ServiceNavigation::SetService);
    Add("SetBootupService",
        {Out("status", kInt), In("service", kNumber64), In("tvMode", kTvMode), In("option", kInt)},
        &ServiceNavigation::SetBootupService);
    Add("GetLatestVeldaServiceId",
        {Out("status", kInt), Out("service", kNumber64), In("tvMode", kTvMode)},
        &ServiceNavigation::GetLatestVeldaServiceId);
    Add("GetLatestServiceId",
        {Out("status", kInt), Out("service", kNumber64), In("tvMode", kTvMode)},
        &ServiceNavigation::GetLatestServiceId);
}

bool ServiceNavigation::ReadMode(const Pipeline& pipeline, const wire::Node& node,
                                 const char* operation, TvMode& tvMode) {
    tvMode = ReadTvMode(node);
    if (tvMode.antenna == ANTENNA_NONE)
        tvMode.antenna = pipeline.tvMode.antenna;
    if (tvMode.serviceMode == SERVICE_MODE_NONE)
        tvMode.serviceMode = pipeline.tvMode.serviceMode;
    if (tvMode.antenna >= ANTENNA_AIR && tvMode.antenna <= ANTENNA_SATELLITE &&
        tvMode.serviceMode >= 0)
        return true;
    m_log.Write("tvtunerinfosrc", "pipeline %s: %s refused: no antenna %d, service mode %d",
                pipeline.word.c_str(), operation, tvMode.antenna, tvMode.serviceMode);
    return false;
}

void ServiceNavigation::GetTvMode(const Call& call, const ArgumentReader&, ReplyWriter& out) {
    out.Int(0, kDone);
    WriteTvMode(out.Tree(), 1, PipelineOf(call).tvMode);
}

void ServiceNavigation::GetServiceList(const Call& call, const ArgumentReader& in,
                                       ReplyWriter& out) {
    ChannelList* list = m_lineUp.GetChannelList();
    if (list == nullptr)
        return RefuseWithoutLineUp("GetServiceList", out);
    TvMode tvMode;
    if (!ReadMode(PipelineOf(call), in.At(3), "GetServiceList", tvMode))
        return out.Int(0, kBadArgument);
    list->List(in.At(1), tvMode, in.Int(4), in.Int(5), out);
}

// Without a service: back to what was shown last under that mode.
void ServiceNavigation::SetTvMode(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    TvMode tvMode;
    if (!ReadMode(pipeline, in.At(1), "SetTvMode", tvMode))
        return out.Int(0, kBadArgument);
    Change change;
    change.sequence = call.sequence;
    change.tvMode = tvMode;
    if (tvMode != pipeline.tvMode) {
        const auto latest = pipeline.latest.find(tvMode);
        change.service =
            latest == pipeline.latest.end() ? INVALID_SERVICE_ID : latest->second.broadcast;
    }
    m_preparation.Request(HandleOf(call), change);
    out.Int(0, kDone);
}

void ServiceNavigation::SetTvModeAndService(const Call& call, const ArgumentReader& in,
                                            ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    TvMode tvMode;
    if (!ReadMode(pipeline, in.At(1), "SetTvMode", tvMode))
        return out.Int(0, kBadArgument);
    const std::uint64_t service = in.Number64(2);
    const std::int32_t status =
        m_pipelines.CheckService(pipeline, "SetTvMode", service, tvMode.antenna);
    if (status == kDone)
        Show(call, service, tvMode);
    out.Int(0, status);
}

void ServiceNavigation::SetDTVMode(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    Pipeline& pipeline = PipelineOf(call);
    const std::int32_t mode = in.Int(1);
    const bool enable = in.Bool(2);
    if (mode < DTV_MODE_DEMUX_ONLY || mode > DTV_MODE_ALL) {
        m_log.Write("tvdemuxer", "pipeline %s: SetDTVMode refused: no mode %d",
                    pipeline.word.c_str(), mode);
        return out.Int(0, kBadArgument);
    }
    DtvModes& modes = pipeline.dtvModes;
    if (mode == DTV_MODE_DEMUX_ONLY || mode == DTV_MODE_ALL)
        modes.demux = enable;
    if (mode == DTV_MODE_AUDIO_ONLY || mode == DTV_MODE_ALL)
        modes.audio = enable;
    if (mode == DTV_MODE_VIDEO_ONLY || mode == DTV_MODE_ALL)
        modes.video = enable;
    m_log.Write("tvdemuxer", "pipeline %s: DTV mode %d %s", pipeline.word.c_str(), mode,
                enable ? "on" : "off");
    out.Int(0, kDone);
}

void ServiceNavigation::SetService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    const std::uint64_t service = in.Number64(1);
    const std::int32_t status =
        m_pipelines.CheckService(pipeline, "SetService", service, pipeline.tvMode.antenna);
    if (status == kDone)
        Show(call, service, {});
    out.Int(0, status);
}

// A service is shown by the tuner, whatever the pipeline shows now.
void ServiceNavigation::Show(const Call& call, std::uint64_t service,
                             const std::optional<TvMode>& tvMode) {
    Change change;
    change.sequence = call.sequence;
    change.tvMode = tvMode;
    change.service = service;
    if (PipelineOf(call).source != SOURCE_TV)
        change.source = SOURCE_TV;
    m_preparation.Request(HandleOf(call), change);
}

void ServiceNavigation::SetBootupService(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    ChannelList* list = m_lineUp.GetChannelList();
    if (list == nullptr)
        return RefuseWithoutLineUp("SetBootupService", out);
    out.Int(0, list->SetBootupService(in.Number64(1), ReadTvMode(in.At(2)), in.Int(3)));
}

void ServiceNavigation::GetLatestVeldaServiceId(const Call& call, const ArgumentReader& in,
                                                ReplyWriter& out) {
    GetLatest(call, in, &Latest::streamed, out);
}

void ServiceNavigation::GetLatestServiceId(const Call& call, const ArgumentReader& in,
                                           ReplyWriter& out) {
    GetLatest(call, in, &Latest::broadcast, out);
}

void ServiceNavigation::GetLatest(const Call& call, const ArgumentReader& in,
                                  std::uint64_t Latest::*kind, ReplyWriter& out) {
    const Pipeline& pipeline = PipelineOf(call);
    TvMode tvMode;
    if (!ReadMode(pipeline, in.At(2), "GetLatestServiceId", tvMode))
        return out.Int(0, kBadArgument);
    const auto latest = pipeline.latest.find(tvMode);
    if (latest == pipeline.latest.end() || latest->second.*kind == INVALID_SERVICE_ID) {
        m_log.Write("tvtunerinfosrc", "pipeline %s: nothing has been shown of antenna %s",
                    pipeline.word.c_str(), ToAntennaName(tvMode.antenna).c_str());
        return out.Int(0, kUnknown);
    }
    out.Int(0, kDone);
    out.Number64(1, latest->second.*kind);
}

void ServiceNavigation::RefuseWithoutLineUp(const char* operation, ReplyWriter& out) {
    m_log.Write("tvtunerinfosrc", "%s refused: there is no line-up", operation);
    out.Int(0, kRefused);
}

} // namespace sim
