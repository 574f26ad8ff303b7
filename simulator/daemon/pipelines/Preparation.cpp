#include "Preparation.h"

#include <algorithm>
#include <cinttypes>

#include <base/Number.h>
#include <nlohmann/json.hpp>

#include "Event.h"
#include "Results.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::size_t kMaxReceivers = 256; // per client
constexpr std::size_t kMaxName = 255;
constexpr std::uint32_t kMaxLimitMilliseconds = 24 * 3600 * 1000;

// `state` of a receiver that is ready.
constexpr std::int32_t kReady = 1;

const char* ToText(EStateChangeType type) {
    return type == STATE_CHANGE_SERVICE ? "service" : "source";
}

bool IsKind(EStateChangeType type) {
    return type == STATE_CHANGE_SERVICE || type == STATE_CHANGE_SOURCE;
}

} // namespace

Preparation::Preparation(Context& context, Pipelines& pipelines) : m_context(context), m_pipelines(pipelines) {
    pipelines.SetHoldCheck([this](const Handle& handle) { return m_queues.contains(handle); });
    context.settings.Add("preparation-limit",
                         "MILLISECONDS: how long receivers can delay a change of service or source",
                         [this](const auto& values, auto&) {
                             std::uint32_t limit = 0;
                             if (values.size() != 1 || !ParseNumber(values[0], limit) || limit > kMaxLimitMilliseconds)
                                 return false;
                             m_limit = limit;
                             return true;
                         });
}

bool Preparation::Concerns(const Change& change, EStateChangeType type) {
    return type == STATE_CHANGE_SERVICE ? change.service.has_value() : change.source.has_value();
}

bool Preparation::IsReady(const Receiver& receiver, const Change& change) {
    return receiver.state == kReady &&
           (receiver.service == INVALID_SERVICE_ID || !change.service || receiver.service == *change.service);
}

bool Preparation::IsHeld(const Queue& queue, const Change& change) {
    return std::any_of(queue.receivers.begin(), queue.receivers.end(), [&](const auto& entry) {
        return Concerns(change, entry.first.type) && !IsReady(entry.second, change);
    });
}

void Preparation::Request(const Handle& handle, const Change& change) {
    const auto found = m_queues.find(handle);
    if (found == m_queues.end())
        return m_pipelines.Perform(handle, change);
    Queue& queue = found->second;
    if (queue.pending)
        m_context.log.Write("quarle-daemon", "pipeline %s: change #%" PRIu64 " replaced", handle.ToText().c_str(),
                            queue.pending->sequence);
    m_context.changes.Mark("/preparation/pipelines");
    queue.pending = change;
    if (!IsHeld(queue, change))
        return Perform(handle, queue, "made");
    m_context.log.Write("quarle-daemon", "pipeline %s: change #%" PRIu64 " waits for its receivers",
                        handle.ToText().c_str(), change.sequence);
    NoteReceivers(handle, queue, change);
    queue.limit.Start(m_limit, [this, handle] { LimitPassed(handle); });
}

void Preparation::Check(const Handle& handle, Queue& queue) {
    if (!queue.pending)
        return;
    NoteReceivers(handle, queue, *queue.pending);
    if (!IsHeld(queue, *queue.pending))
        Perform(handle, queue, "made: no receiver delays it any longer");
}

void Preparation::NoteReceivers(const Handle& handle, const Queue& queue, const Change& change) {
    for (const auto& [key, receiver] : queue.receivers) {
        if (Concerns(change, key.type))
            m_context.log.WriteDebug(Debug::Preparation,
                                     "pipeline %s: change #%" PRIu64 ", \"%s\" of client %" PRIu32 " is %s",
                                     handle.ToText().c_str(), change.sequence, key.name.c_str(), key.client,
                                     IsReady(receiver, change) ? "ready" : "not ready");
    }
}

void Preparation::Perform(const Handle& handle, Queue& queue, const char* why) {
    const Change change = *queue.pending;
    m_context.changes.Mark("/preparation/pipelines");
    queue.pending.reset();
    queue.limit.Stop();
    for (auto& [key, receiver] : queue.receivers) {
        if (Concerns(change, key.type))
            receiver.state = 0;
    }
    m_context.log.Write("quarle-daemon", "pipeline %s: change #%" PRIu64 " %s", handle.ToText().c_str(),
                        change.sequence, why);
    m_pipelines.Perform(handle, change);
}

void Preparation::LimitPassed(const Handle& handle) {
    const Event event(m_context);
    Perform(handle, m_queues.at(handle), "made: the limit has passed");
}

bool Preparation::IsPending(const Handle& handle, EStateChangeType type) const {
    const Change* change = GetPending(handle);
    return change != nullptr && Concerns(*change, type);
}

const Change* Preparation::GetPending(const Handle& handle) const {
    const auto found = m_queues.find(handle);
    return found != m_queues.end() && found->second.pending ? &*found->second.pending : nullptr;
}

std::int32_t Preparation::Refuse(const Handle& handle, const char* what, const std::string& name,
                                 std::int32_t result) const {
    m_context.log.Write(kOwnTag, "pipeline %s: receiver \"%s\" refused: %s", handle.ToText().c_str(), name.c_str(),
                        what);
    return result;
}

std::int32_t Preparation::Register(const Handle& handle, EStateChangeType type, const std::string& name,
                                   std::int32_t option, const Client& client) {
    if (!IsKind(type))
        return Refuse(handle, "unknown kind of change", name, kBadArgument);
    if (name.empty() || name.size() > kMaxName)
        return Refuse(handle, "a receiver needs a name", name, kBadArgument);
    const ReceiverKey key{type, client.GetNumber(), name};
    const auto known = m_queues.find(handle);
    const bool isNew = known == m_queues.end() || !known->second.receivers.contains(key);
    std::size_t& count = m_receivers[client.GetNumber()];
    if (isNew && count >= kMaxReceivers)
        return Refuse(handle, "its client already has 256 receivers", name, kTooMany);
    m_context.changes.Mark("/preparation/pipelines");
    count += isNew;
    // A second registration only changes the option.
    m_queues[handle].receivers[key].option = option;
    m_context.log.Write("quarle-daemon", "pipeline %s: \"%s\" registered for changes of the %s",
                        handle.ToText().c_str(), name.c_str(), ToText(type));
    return kDone;
}

std::int32_t Preparation::Unregister(const Handle& handle, EStateChangeType type, const std::string& name,
                                     const Client& client) {
    if (!IsKind(type))
        return Refuse(handle, "unknown kind of change", name, kBadArgument);
    const auto queue = m_queues.find(handle);
    if (queue == m_queues.end() || queue->second.receivers.erase({type, client.GetNumber(), name}) == 0)
        return Refuse(handle, "is not registered", name, kUnknown);
    m_context.log.Write("quarle-daemon", "pipeline %s: \"%s\" unregistered from changes of the %s",
                        handle.ToText().c_str(), name.c_str(), ToText(type));
    m_context.changes.Mark("/preparation/pipelines");
    --m_receivers[client.GetNumber()];
    Check(handle, queue->second);
    if (queue->second.receivers.empty()) {
        m_queues.erase(queue);
        m_pipelines.DropIfUnused(handle);
    }
    return kDone;
}

std::int32_t Preparation::SetState(const Handle& handle, EStateChangeType type, const std::string& name,
                                   std::int32_t state, std::uint64_t service, const Client& client) {
    if (!IsKind(type))
        return Refuse(handle, "unknown kind of change", name, kBadArgument);
    const auto queue = m_queues.find(handle);
    if (queue == m_queues.end())
        return Refuse(handle, "is not registered", name, kUnknown);
    const auto found = queue->second.receivers.find({type, client.GetNumber(), name});
    if (found == queue->second.receivers.end())
        return Refuse(handle, "is not registered", name, kUnknown);
    m_context.changes.Mark("/preparation/pipelines");
    found->second.state = state;
    found->second.service = service;
    m_context.log.Write("quarle-daemon", "pipeline %s: \"%s\" is in state %d for a change of the %s, 0x%" PRIx64,
                        handle.ToText().c_str(), name.c_str(), state, ToText(type), service);
    Check(handle, queue->second);
    return kDone;
}

void Preparation::ReleaseClient(Client& client) {
    for (auto& [handle, queue] : m_queues) {
        std::erase_if(queue.receivers, [&](const auto& entry) { return entry.first.client == client.GetNumber(); });
        Check(handle, queue);
    }
    m_context.changes.Mark("/preparation/pipelines");
    m_receivers.erase(client.GetNumber());
    for (auto queue = m_queues.begin(); queue != m_queues.end();) {
        if (!queue->second.receivers.empty()) {
            ++queue;
            continue;
        }
        const Handle handle = queue->first;
        queue = m_queues.erase(queue);
        m_pipelines.DropIfUnused(handle);
    }
}

json Preparation::Describe(const Queue& queue) {
    json receivers = json::array();
    for (const auto& [key, receiver] : queue.receivers) {
        receivers.push_back({{"kind", ToText(key.type)},
                             {"name", key.name},
                             {"client", key.client},
                             {"option", receiver.option},
                             {"state", receiver.state},
                             {"service", ToHexText(receiver.service)}});
    }
    json described{{"receivers", receivers}, {"pending", nullptr}};
    if (!queue.pending)
        return described;
    const Change& change = *queue.pending;
    json& pending = described["pending"] = {
        {"call", change.sequence}, {"source", nullptr}, {"service", nullptr}, {"tvMode", nullptr}};
    if (change.source)
        pending["source"] = *change.source;
    if (change.service)
        pending["service"] = ToHexText(*change.service);
    if (change.tvMode)
        pending["tvMode"] = {{"antenna", change.tvMode->antenna}, {"serviceMode", change.tvMode->serviceMode}};
    return described;
}

json Preparation::DescribeState() const {
    json pipelines = json::object();
    for (const auto& [handle, queue] : m_queues)
        pipelines[handle.ToText()] = Describe(queue);
    return {{"limitMs", m_limit}, {"pipelines", pipelines}};
}

bool Preparation::Reset() {
    m_queues.clear();
    m_receivers.clear();
    m_limit = kDefaultLimit;
    return true;
}

} // namespace sim
