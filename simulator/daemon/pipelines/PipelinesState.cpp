// What `norvex-simctl state` shows of the pipelines.
#include <nlohmann/json.hpp>

#include "Pipelines.h"

namespace sim {

using nlohmann::json;

namespace {

json DescribeService(std::uint64_t service) {
    return service == INVALID_SERVICE_ID ? json() : json(ToHexText(service));
}

json DescribeTvMode(const TvMode& tvMode) {
    return {{"antenna", tvMode.antenna}, {"serviceMode", tvMode.serviceMode}};
}

json DescribeLatest(const PipelineState& state) {
    json described = json::array();
    for (const auto& [tvMode, latest] : state.latest) {
        json entry = DescribeTvMode(tvMode);
        entry["broadcast"] = DescribeService(latest.broadcast);
        entry["streamed"] = DescribeService(latest.streamed);
        described.push_back(entry);
    }
    return described;
}

json DescribeDtvModes(const DtvModes& modes) {
    return {{"demuxOnly", modes.demux},
            {"audioOnly", modes.audio},
            {"videoOnly", modes.video},
            {"all", modes.demux && modes.audio && modes.video}};
}

json DescribeEvents(const PipelineState& state) {
    static const std::map<ESIEvent, const char*> kNames{
        {SI_EVENT_STARTED, "started"},
        {SI_EVENT_CAPTIONS, "captions"},
        {SI_EVENT_DECODER_RESTARTED, "decoderRestarted"}};
    json described = json::object();
    for (const auto& [event, milliseconds] : state.events)
        described[kNames.at(event)] = milliseconds;
    return described;
}

} // namespace

json Pipelines::Describe(const Pipeline& pipeline) const {
    json described{
        {"profile", pipeline.handle.profile},
        {"screen", pipeline.handle.screen},
        {"sessions", pipeline.sessions},
        {"source", pipeline.source},
        {"service", DescribeService(pipeline.service)},
        {"tvMode", DescribeTvMode(pipeline.tvMode)},
        {"latest", DescribeLatest(pipeline)},
        {"videoMute", pipeline.videoMute},
        {"audioMute", pipeline.audioMute},
        {"dtvModes", DescribeDtvModes(pipeline.dtvModes)},
        {"hdmiAnalysis", pipeline.hdmiAnalysis},
        {"decoderRestarts", pipeline.decoderRestarts},
        {"preSetSource", {{"next", pipeline.preparedNext}, {"last", pipeline.preparedLast}}},
        {"tuner", {{"at", pipeline.tuner.ToText()}, {"signal", HasSignal(pipeline)}}},
        {"receiving", pipeline.receiving},
        {"captions", pipeline.captions},
        {"events", DescribeEvents(pipeline)},
        {"preview", nullptr},
        {"windowId", nullptr},
        {"crop", nullptr},
        {"mainPicture", nullptr}};
    if (pipeline.preview)
        described["preview"] = {{"source", pipeline.preview->source},
                                {"service", DescribeService(pipeline.preview->service)}};
    if (pipeline.windowId)
        described["windowId"] = *pipeline.windowId;
    if (pipeline.crop)
        described["crop"] = {{"first", pipeline.crop->first.Describe()},
                             {"second", pipeline.crop->second.Describe()}};
    if (pipeline.mainPicture)
        described["mainPicture"] = pipeline.mainPicture->Describe();
    return described;
}

json Pipelines::DescribeState() const {
    json described = json::object();
    for (const auto& [handle, pipeline] : m_pipelines)
        described[pipeline.word] = Describe(pipeline);
    return described;
}

} // namespace sim
