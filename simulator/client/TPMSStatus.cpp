#include <memory>
#include <utility>

#include <norvex/client/TPMSStatus.h>
#include <values/Values.h>

#include "MarshalableValue.h"

namespace {

class TextEntry final : public TCTPMSStatusEntry {
public:
    TextEntry(NorvexHandle handle, std::string text) : m_handle(handle), m_text(std::move(text)) {}

    NorvexHandle GetHandle() const override { return m_handle; }
    std::string GetText() const override { return m_text; }

private:
    NorvexHandle m_handle;
    std::string m_text;
};

struct Snapshot {
    std::map<NorvexHandle, TCPipelineInfo> pipelines;
    std::vector<std::unique_ptr<TCTPMSStatusEntry>> ownEntries;
    std::vector<const TCTPMSStatusEntry*> entries;
};

Snapshot& GetSnapshot(void* state) {
    return *static_cast<Snapshot*>(state);
}

using EventTimes = std::map<ESIEvent, unsigned long long>;

EventTimes& GetTimes(void* state) {
    return *static_cast<EventTimes*>(state);
}

} // namespace

TCPipelineInfo::TCPipelineInfo() : m_pState(new EventTimes) {}

TCPipelineInfo::TCPipelineInfo(const TCPipelineInfo& other) : m_pState(new EventTimes(GetTimes(other.m_pState))) {}

TCPipelineInfo& TCPipelineInfo::operator=(const TCPipelineInfo& other) {
    if (this != &other)
        GetTimes(m_pState) = GetTimes(other.m_pState);
    return *this;
}

TCPipelineInfo::~TCPipelineInfo() {
    delete &GetTimes(m_pState);
}

const std::map<ESIEvent, unsigned long long>& TCPipelineInfo::GetEventTimes() const {
    return GetTimes(m_pState);
}

void TCPipelineInfo::SetEventTime(ESIEvent event, unsigned long long milliseconds) {
    GetTimes(m_pState)[event] = milliseconds;
}

TCTPMSStatusEntry::~TCTPMSStatusEntry() = default;

TCTPMSStatus::TCTPMSStatus() {
    m_pState = new Snapshot;
}

TCTPMSStatus::~TCTPMSStatus() {
    delete &GetSnapshot(m_pState);
}

const std::vector<const TCTPMSStatusEntry*>& TCTPMSStatus::GetEntries() const {
    return GetSnapshot(m_pState).entries;
}

const std::map<NorvexHandle, TCPipelineInfo>& TCTPMSStatus::GetPipelines() const {
    return GetSnapshot(m_pState).pipelines;
}

bool TCTPMSStatus::ClassToTree(TCTreeBranch& branch) {
    const Snapshot& snapshot = GetSnapshot(m_pState);
    values::Status status;
    for (const auto& [handle, info] : snapshot.pipelines) {
        status.pipelines.push_back({handle.profile, handle.screenId, {}});
        for (const auto& [event, milliseconds] : info.GetEventTimes())
            status.pipelines.back().events.push_back({event, static_cast<std::int64_t>(milliseconds)});
    }
    for (const TCTPMSStatusEntry* entry : snapshot.entries) {
        const NorvexHandle handle = entry->GetHandle();
        status.entries.push_back({handle.profile, handle.screenId, entry->GetText()});
    }
    return WriteValue(branch, status);
}

bool TCTPMSStatus::TreeToClass(TCTreeBranch& branch) {
    values::Status status;
    if (!ReadValue(branch, status))
        return false;
    Snapshot snapshot;
    for (const values::PipelineEvents& pipeline : status.pipelines) {
        TCPipelineInfo& info = snapshot.pipelines[{static_cast<EProfile>(pipeline.profile), pipeline.screen}];
        for (const values::EventTime& time : pipeline.events)
            info.SetEventTime(static_cast<ESIEvent>(time.event), static_cast<unsigned long long>(time.milliseconds));
    }
    for (values::StatusEntry& entry : status.entries) {
        const NorvexHandle handle{static_cast<EProfile>(entry.profile), entry.screen};
        snapshot.ownEntries.push_back(std::make_unique<TextEntry>(handle, std::move(entry.text)));
        snapshot.entries.push_back(snapshot.ownEntries.back().get());
    }
    GetSnapshot(m_pState) = std::move(snapshot);
    return true;
}
