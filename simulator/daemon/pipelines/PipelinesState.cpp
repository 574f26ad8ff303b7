// The pipelines in `norvex-simctl state`.
#include <algorithm>

#include <nlohmann/json.hpp>

#include "Pipelines.h"
#include "ValueJson.h"

namespace sim {

using nlohmann::json;

namespace {

json DescribeService(std::uint64_t service) {
    return service == INVALID_SERVICE_ID ? json() : json(ToHexText(service));
}

json DescribeLatest(const PipelineState& state) {
    json described = json::array();
    for (const auto& [tvMode, latest] : state.latest) {
        json entry = ToJson(tvMode);
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
    static const std::map<ESIEvent, const char*> kNames{{SI_EVENT_STARTED, "started"},
                                                        {SI_EVENT_CAPTIONS, "captions"},
                                                        {SI_EVENT_DECODER_RESTARTED, "decoderRestarted"}};
    json described = json::object();
    for (const auto& [event, milliseconds] : state.events)
        described[kNames.at(event)] = milliseconds;
    return described;
}

json DescribePreview(const PipelineState& state) {
    if (!state.preview)
        return {};
    return {{"source", state.preview->source}, {"service", DescribeService(state.preview->service)}};
}

json DescribeAnalysis(const PipelineState& state) {
    std::set<std::int32_t> inputs;
    for (const auto& [source, client] : state.hdmiAnalysis)
        inputs.insert(source);
    return inputs;
}

json DescribeCrop(const PipelineState& state) {
    if (!state.crop)
        return {};
    return {{"first", ToJson(state.crop->first)}, {"second", ToJson(state.crop->second)}};
}

} // namespace

json Pipelines::Describe(const Pipeline& pipeline) const {
    return {{"profile", pipeline.handle.profile},
            {"screen", pipeline.handle.screen},
            {"sessions", pipeline.sessions},
            {"source", pipeline.source},
            {"service", DescribeService(pipeline.service)},
            {"tvMode", ToJson(pipeline.tvMode)},
            {"latest", DescribeLatest(pipeline)},
            {"videoMute", pipeline.videoMute},
            {"audioMute", pipeline.audioMute},
            {"dtvModes", DescribeDtvModes(pipeline.dtvModes)},
            {"hdmiAnalysis", DescribeAnalysis(pipeline)},
            {"decoderRestarts", pipeline.decoderRestarts},
            {"qos", m_log.GetDebug().qos},
            {"preSetSource", {{"next", pipeline.preparedNext}, {"last", pipeline.preparedLast}}},
            {"tuner", {{"at", pipeline.GetTuner().ToText()}, {"signal", HasSignal(pipeline)}}},
            {"receiving", pipeline.receiving},
            {"captions", pipeline.captions},
            {"events", DescribeEvents(pipeline)},
            {"preview", DescribePreview(pipeline)},
            {"windowId", ToJson(pipeline.windowId)},
            {"crop", DescribeCrop(pipeline)},
            {"mainPicture", ToJson(pipeline.mainPicture)}};
}

json Pipelines::DescribeValue(const std::string& name) const {
    const auto found = std::find_if(m_pipelines.begin(), m_pipelines.end(),
                                    [&](const auto& entry) { return entry.second.name == name; });
    return found == m_pipelines.end() ? json() : Describe(found->second);
}

json Pipelines::DescribeState() const {
    json described = json::object();
    for (const auto& [handle, pipeline] : m_pipelines)
        described[pipeline.name] = Describe(pipeline);
    return described;
}

} // namespace sim
