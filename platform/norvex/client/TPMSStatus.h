#pragma once

#include <map>
#include <string>
#include <vector>

#include <norvex/client/NorvexHandle.h>
#include <norvex/core/Export.h>
#include <norvex/core/Marshalable.h>

// Events in the service information of a stream.
enum ESIEvent : int {
    SI_EVENT_STARTED = 0,
    SI_EVENT_CAPTIONS = 1,
    SI_EVENT_DECODER_RESTARTED = 2,
};

// One entry of the snapshot; the kinds of entries derive from it.
class NORVEX_API TCTPMSStatusEntry {
public:
    virtual ~TCTPMSStatusEntry();
    // The pipeline that it describes.
    virtual NorvexHandle GetHandle() const = 0;
    // Its description in a few words.
    virtual std::string GetText() const = 0;
};

// One pipeline in the snapshot: when each event was last seen, in milliseconds since the
// middleware's start.
class NORVEX_API TCPipelineInfo {
public:
    TCPipelineInfo();
    TCPipelineInfo(const TCPipelineInfo& other);
    TCPipelineInfo& operator=(const TCPipelineInfo& other);
    ~TCPipelineInfo();

    const std::map<ESIEvent, unsigned long long>& GetEventTimes() const;
    void SetEventTime(ESIEvent event, unsigned long long milliseconds);

private:
    void* m_pState;
};

// Snapshot of all pipelines.
class NORVEX_API TCTPMSStatus : public TCMarshalable {
public:
    TCTPMSStatus();
    ~TCTPMSStatus() override;
    TCTPMSStatus(const TCTPMSStatus&) = delete;
    TCTPMSStatus& operator=(const TCTPMSStatus&) = delete;

    // Owned by the snapshot, as are the pipelines.
    const std::vector<const TCTPMSStatusEntry*>& GetEntries() const;
    const std::map<NorvexHandle, TCPipelineInfo>& GetPipelines() const;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
};
