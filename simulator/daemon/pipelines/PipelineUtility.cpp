#include <cinttypes>
#include <string>
#include <vector>

#include <base/Printed.h>

#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Preparation.h"
#include "Results.h"

namespace sim {

namespace {

// The texts of a pipeline in the status.
std::vector<std::string> MakeEntries(const Pipeline& pipeline, const Change* pending, bool qos) {
    std::vector<std::string> entries;
    entries.push_back(Printed("source %d, antenna %s, service mode %d", pipeline.source,
                              ToAntennaName(pipeline.tvMode.antenna).c_str(), pipeline.tvMode.serviceMode));
    if (pipeline.service != INVALID_SERVICE_ID)
        entries.push_back(
            Printed("service 0x%" PRIx64 ", %s", pipeline.service, pipeline.receiving ? "received" : "not received"));
    if (pipeline.videoMute != 0 || pipeline.audioMute != 0)
        entries.push_back(Printed("mute: video %d, audio %d", pipeline.videoMute, pipeline.audioMute));
    if (qos)
        entries.emplace_back("QoS on");
    if (pending != nullptr && pending->source)
        entries.push_back(Printed("pending: source %d", *pending->source));
    if (pending != nullptr && pending->service)
        entries.push_back(Printed("pending: service 0x%" PRIx64, *pending->service));
    return entries;
}

// IPipelineUtility: changes that wait for their receivers, and the pipelines' status.
class PipelineUtility : public PipelineInterface {
public:
    using Method = interfaces::PipelineUtilityMethod;

    PipelineUtility(Context& context, Pipelines& pipelines, Preparation& preparation)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines), m_preparation(preparation) {
        Add(Method::NotifyReceiverState,
            {Out("status", kInt), In("type", kInt), In("receiver", kText), In("state", kInt), In("service", kNumber64)},
            &PipelineUtility::NotifyReceiverState);
        Add(Method::RegisterForStateChange,
            {Out("status", kInt), In("type", kInt), In("receiver", kText), In("option", kInt)},
            &PipelineUtility::RegisterForStateChange);
        Add(Method::UnregisterFromStateChange, {Out("status", kInt), In("type", kInt), In("receiver", kText)},
            &PipelineUtility::UnregisterFromStateChange);
        Add(Method::CheckPendingState, {Out("status", kInt), In("type", kInt), Out("pending", kBool)},
            &PipelineUtility::CheckPendingState);
        Add(Method::GetCurrentTPMSStatus, {Out("status", kInt), Out("snapshot", kStatus)},
            &PipelineUtility::GetCurrentTPMSStatus);
        Add(Method::NotifyReadyForSetService,
            {Out("status", kInt), In("type", kInt), In("application", kText), In("state", kInt),
             In("service", kNumber64)},
            &PipelineUtility::NotifyReadyForSetService);
    }

private:
    void NotifyReceiverState(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        out.Int(0, m_preparation.SetState(HandleOf(call), static_cast<EStateChangeType>(in.Int(1)),
                                          std::string(in.Text(2)), in.Int(3), in.Number64(4), call.client));
    }

    void RegisterForStateChange(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        out.Int(0, m_preparation.Register(HandleOf(call), static_cast<EStateChangeType>(in.Int(1)),
                                          std::string(in.Text(2)), in.Int(3), call.client));
    }

    void UnregisterFromStateChange(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        out.Int(0, m_preparation.Unregister(HandleOf(call), static_cast<EStateChangeType>(in.Int(1)),
                                            std::string(in.Text(2)), call.client));
    }

    void CheckPendingState(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const auto type = static_cast<EStateChangeType>(in.Int(1));
        if (type != STATE_CHANGE_SERVICE && type != STATE_CHANGE_SOURCE)
            return out.Int(0, m_log.Refuse(kBadArgument, kOwnTag,
                                           "CheckPendingState refused: unknown kind of change %d", in.Int(1)));
        out.Int(0, kDone);
        out.Bool(2, m_preparation.IsPending(HandleOf(call), type));
    }

    // For all pipelines, not only that of the session.
    void GetCurrentTPMSStatus(const Call&, const ArgumentReader&, ReplyWriter& out) {
        out.Int(0, kDone);
        values::Status status;
        for (const auto& [handle, pipeline] : m_pipelines.GetAll()) {
            status.pipelines.push_back({handle.profile, handle.screen, {}});
            for (const auto& [event, milliseconds] : pipeline.events)
                status.pipelines.back().events.push_back({event, static_cast<std::int64_t>(milliseconds)});
            for (std::string& text : MakeEntries(pipeline, m_preparation.GetPending(handle), m_log.GetDebug().qos))
                status.entries.push_back({handle.profile, handle.screen, std::move(text)});
        }
        out.Value(1, status);
    }

    // For one service: unlike a receiver's state it cannot be for any service.
    void NotifyReadyForSetService(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const std::uint64_t service = in.Number64(4);
        if (service == INVALID_SERVICE_ID)
            return out.Int(
                0, m_log.Refuse(kBadArgument, kOwnTag, "NotifyReadyForSetService refused: the invalid service"));
        out.Int(0, m_preparation.SetState(HandleOf(call), static_cast<EStateChangeType>(in.Int(1)),
                                          std::string(in.Text(2)), in.Int(3), service, call.client));
    }

    Preparation& m_preparation;
};

} // namespace

void RegisterPipelineUtility(Context& context, Pipelines& pipelines, Preparation& preparation) {
    context.Register<PipelineUtility>(context, pipelines, preparation);
}

} // namespace sim
