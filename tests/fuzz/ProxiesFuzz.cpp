// A reply to each operation of each of the client library's and the device library's proxies: the
// first byte chooses the operation, the rest is the reply's tree. A tree that is broken anywhere
// counts as no answer and leaves every argument as it was; what is filled in is bounded by what
// came.

#include <functional>
#include <vector>

#include <norvex/client/AVControl.h>
#include <norvex/client/DataControl.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ReferenceCount.h>
#include <norvex/client/ScanControl.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceGuide.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/SignalSubscriber.h>
#include <norvex/client/SourceControl.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/VideoControl.h>
#include <norvex/client/ZoomControl.h>
#include <norvex/device/LogTags.h>
#include <norvex/device/Vconf.h>
#include <wire/Tree.h>

#include "Input.h"
#include "Replies.h"
#include "Require.h"

namespace {

// Size of the reply, and whether it is one.
std::size_t replySize = 0;
bool isReply = false;

int IgnoreSignal(ESignalType, EProfile, unsigned short, TSSignalData, void*) {
    return 0;
}

// Each object once: what a proxy keeps between calls is its session.
struct Objects {
    Objects() {
        NorvexAPI::CreateAVControl(PROFILE_MAIN, 0, &av);
        NorvexAPI::CreateDataControl(PROFILE_MAIN, 0, &data);
        NorvexAPI::CreatePipelineUtility(PROFILE_MAIN, 0, &pipelines);
        NorvexAPI::CreateReferenceCount(PROFILE_MAIN, 0, &references);
        NorvexAPI::CreateScanControl(&scans);
        NorvexAPI::CreateService(&services);
        NorvexAPI::CreateServiceGuide(&guide);
        NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation);
        NorvexAPI::CreateSignalSubscriber(IgnoreSignal, &subscriber);
        NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, &sources);
        NorvexAPI::CreateTunerControl(PROFILE_MAIN, 0, &tuner);
        NorvexAPI::CreateVideoControl(PROFILE_MAIN, 0, &video);
        NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, &zoom);
    }
    IAVControl* av = nullptr;
    IDataControl* data = nullptr;
    IPipelineUtility* pipelines = nullptr;
    IReferenceCount* references = nullptr;
    IScanControl* scans = nullptr;
    IService* services = nullptr;
    IServiceGuide* guide = nullptr;
    IServiceNavigation* navigation = nullptr;
    ISignalSubscriber* subscriber = nullptr;
    ISourceControl* sources = nullptr;
    ITunerControl* tuner = nullptr;
    IVideoControl* video = nullptr;
    IZoomControl* zoom = nullptr;
};

const Objects& Made() {
    static const Objects objects;
    return objects;
}

// The call's status, once it is known that a broken reply has not been used.
int Status(int status) {
    REQUIRE(isReply || status == -1);
    return status;
}

// An operation that fills one plain value in.
template <class T, class Call> void Value(T before, Call call) {
    T value = before;
    Status(call(value));
    REQUIRE(isReply || value == before);
}

void ServiceList() {
    TCCriteriaHelper criteria;
    criteria.Fetch(SERVICE_FIELD_ID);
    std::list<TCServiceData*> records;
    Status(Made().navigation->GetServiceList(criteria, records, {}, 0, 10));
    REQUIRE(records.size() <= replySize / wire::kNodeHeaderSize);
    REQUIRE(isReply || records.empty());
    std::uint64_t sum = 0;
    for (TCServiceData* record : records) {
        for (int tag = -1; tag < 120 && record->GetFieldTable() != nullptr; ++tag) {
            const TCServiceField* field = record->GetFieldTable()->Find(tag);
            if (field == nullptr || field->GetData() == nullptr)
                continue;
            sum += tag == SERVICE_FIELD_ID ? *static_cast<const std::uint64_t*>(field->GetData())
                                           : *static_cast<const std::uint32_t*>(field->GetData());
        }
        delete record;
    }
    REQUIRE(sum != 1 || !records.empty());
}

void Program() {
    TCProgramData program;
    Status(Made().guide->GetCurrentProgram(1, program));
    unsigned short title[8];
    unsigned length = 8;
    REQUIRE(!program.Title(title, &length) || (isReply && length <= 8));
}

void Snapshot() {
    TCTPMSStatus status;
    Status(Made().pipelines->GetCurrentTPMSStatus(&status));
    REQUIRE(status.GetEntries().size() <= replySize && status.GetPipelines().size() <= replySize);
    std::size_t length = 0;
    for (const TCTPMSStatusEntry* entry : status.GetEntries())
        length += entry->GetText().size();
    REQUIRE(length <= replySize && (isReply || status.GetPipelines().empty()));
}

void Windows() {
    std::vector<int> windows{1, 2};
    Status(Made().zoom->GetConnectedZoomWindows(windows));
    REQUIRE(windows.size() <= 2 + replySize / 4);
    REQUIRE(isReply || windows == std::vector<int>({1, 2}));
}

void TvMode() {
    TSTvMode mode(ANTENNA_CABLE, SERVICE_MODE_DEFAULT);
    Status(Made().navigation->GetTvMode(mode));
    REQUIRE(isReply || (mode.m_antennaMode == ANTENNA_CABLE && mode.m_serviceMode == 0));
}

const std::uint64_t service = 7;
const TSTvMode tvMode;
const TSRectInfo rect(0, 0, 16, 9);
const std::list<std::pair<std::uint64_t, std::uint32_t>> codes{{1, 2}};
std::string text = "words";

// In the order of the interfaces.
const std::vector<std::function<void()>> operations{
    [] { Status(Made().av->RestartVideoDecoder()); },
    [] { Status(Made().av->MuteVideo(1)); },
    [] { Status(Made().av->MuteAudio(1)); },
    [] { Value(true, [](bool& value) { return Made().data->CheckCaptionExist(&value); }); },
    [] { Status(Made().pipelines->NotifyReceiverState(EStateChangeType(1), text, 1, service)); },
    [] { Status(Made().pipelines->RegisterForStateChange(EStateChangeType(1), text, 1)); },
    [] { Status(Made().pipelines->UnregisterFromStateChange(EStateChangeType(1), text)); },
    [] { Value(false, [](bool& value) { return Made().pipelines->CheckPendingState(EStateChangeType(1), &value); }); },
    Snapshot,
    [] { Status(Made().pipelines->NotifyReadyForSetService(1, text, 1, service)); },
    [] { Value(5, [](int& value) { return Made().references->GetReferenceCount(&value); }); },
    [] { Status(Made().scans->IsTuneAroundNeeded(codes)); },
    [] { Status(Made().scans->StartTuneAround(codes, text)); },
    [] { Status(Made().scans->StopManualScan()); },
    [] { Status(Made().scans->IsBarkerChannelScanAvailable(tvMode)); },
    [] { Status(Made().scans->StartBarkerChannelScan(text, tvMode)); },
    [] { Status(Made().scans->StopBarkerChannelScan()); },
    [] {
        TCServiceData record;
        Status(Made().services->FindService(TCCriteriaHelper(), record, 1));
        REQUIRE(isReply || record.GetFieldTable() == nullptr);
    },
    Program,
    TvMode,
    ServiceList,
    [] { Status(Made().navigation->SetTvMode(tvMode, text)); },
    [] { Status(Made().navigation->SetTvMode(tvMode, service, text)); },
    [] { Status(Made().navigation->SetDTVMode(DTV_MODE_ALL, true)); },
    [] { Status(Made().navigation->SetService(service, 0, 0, text)); },
    [] { Status(Made().navigation->SetBootupService(service, tvMode, 0)); },
    [] {
        Value(9ULL,
              [](unsigned long long& value) { return Made().navigation->GetLatestVeldaServiceId(&value, tvMode); });
    },
    [] {
        Value(9ULL, [](unsigned long long& value) { return Made().navigation->GetLatestServiceId(&value, tvMode); });
    },
    [] { Status(Made().subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0)); },
    [] { Status(Made().subscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 0, 0)); },
    [] { Status(Made().sources->SetSource(SOURCE_TV, text)); },
    [] { Status(Made().sources->SetSource(SOURCE_TV, service, text)); },
    [] { Status(Made().sources->PreSetSourceA()); },
    [] { Status(Made().sources->StartHDMIAnalysis(SOURCE_HDMI1)); },
    [] { Status(Made().sources->StopHDMIAnalysis(SOURCE_HDMI1)); },
    [] { Status(Made().sources->PreSetSourceC()); },
    [] { Status(Made().sources->PreSetSourceB()); },
    [] { Status(Made().sources->SetPreviewSource(SOURCE_TV, text)); },
    [] { Status(Made().sources->SetPreviewSource(SOURCE_TV, service, text)); },
    [] { Status(Made().tuner->CheckTunerSignalState()); },
    [] { Status(Made().video->SetCropVideo(rect, rect)); },
    [] { Value(5, [](int& value) { return Made().video->SetWindowId(&value); }); },
    [] { Value(5, [](int& value) { return Made().zoom->CreateZoomWindow(value, rect, rect, rect); }); },
    [] { Status(Made().zoom->DeleteZoomWindow({1}, rect)); },
    [] { Status(Made().zoom->SetZoomWindow({1}, true)); },
    [] { Status(Made().zoom->MuteZoomWindow({1}, true)); },
    [] { Value(true, [](bool& value) { return Made().zoom->IsZoomWindowStarted(1, value); }); },
    [] { Value(true, [](bool& value) { return Made().zoom->IsZoomWindowMuted(1, value); }); },
    [] { Status(Made().zoom->SetZoomWindowRect(1, rect, rect, rect)); },
    [] { Value(true, [](bool& value) { return Made().zoom->IsZoomAvailable(value); }); },
    [] { Value(5, [](int& value) { return Made().zoom->GetZoomSharingType(value); }); },
    Windows,
    [] { Value(5, [](int& value) { return vconf_get_int("db/key", &value); }); },
    [] { Status(startdlogtagbydefault("quarle-daemon")); },
    [] { Status(stopdlogtagbydefault("quarle-daemon")); },
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::size_t operation = input.Byte() % operations.size();
    replySize = input.Rest().size();
    isReply = wire::IsWellFormed(input.Rest().data(), replySize);
    // Objects are made before the reply is set: one call an input.
    ReplyWith({});
    Made();
    ReplyWith(input.Rest());
    operations[operation]();
    REQUIRE(GetReplyCount() == 1);
    return 0;
}
