#include <norvex/client/TPMSStatus.h>

#include <memory>
#include <utility>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "StatusForms.h"

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

constexpr short kPipelinesTag = 0;
constexpr short kEntriesTag = 1;

Snapshot& GetSnapshot(void* state) {
    return *static_cast<Snapshot*>(state);
}

} // namespace

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
    FormList<PipelineForm> pipelines;
    for (const auto& [handle, info] : snapshot.pipelines) {
        PipelineForm& form = pipelines.elements.emplace_back();
        form.handle = handle;
        for (const auto& [event, milliseconds] : info.GetEventTimes())
            form.times.push_back({event, milliseconds});
    }
    FormList<EntryForm> entries;
    for (const TCTPMSStatusEntry* entry : snapshot.entries) {
        EntryForm& form = entries.elements.emplace_back();
        form.handle = entry->GetHandle();
        form.text = entry->GetText();
    }
    TCClassToTreeFormatter formatter(branch);
    formatter.PushMarshalableClass(kPipelinesTag, &pipelines);
    formatter.PushMarshalableClass(kEntriesTag, &entries);
    return formatter.Extract();
}

bool TCTPMSStatus::TreeToClass(TCTreeBranch& branch) {
    FormList<PipelineForm> pipelines;
    FormList<EntryForm> entries;
    TCTreeToClassFormatter formatter(branch);
    formatter.PushMarshalableClass(kPipelinesTag, &pipelines);
    formatter.PushMarshalableClass(kEntriesTag, &entries);
    if (!formatter.FillOut())
        return false;
    Snapshot snapshot;
    for (const PipelineForm& form : pipelines.elements) {
        TCPipelineInfo& info = snapshot.pipelines[form.handle];
        for (const EventTime& time : form.times)
            info.SetEventTime(static_cast<ESIEvent>(time.event), time.milliseconds);
    }
    for (EntryForm& form : entries.elements) {
        snapshot.ownEntries.push_back(
            std::make_unique<TextEntry>(form.handle, std::move(form.text)));
        snapshot.entries.push_back(snapshot.ownEntries.back().get());
    }
    GetSnapshot(m_pState) = std::move(snapshot);
    return true;
}
