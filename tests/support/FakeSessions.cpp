// The factories, and the sessions that they hand out, in the order of the platform's headers.

#include <memory>

#include <norvex/client/AVControl.h>
#include <norvex/client/DataControl.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ReferenceCount.h>
#include <norvex/client/ScanControl.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceGuide.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/SourceControl.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/VideoControl.h>
#include <norvex/client/ZoomControl.h>

#include "CallText.h"
#include "FakeNorvexAPI.h"
#include "Timeline.h"

INorvexSession::~INorvexSession() = default;
ISignalSubscriber::~ISignalSubscriber() = default;

namespace {

FakeNorvexAPI& Fake() {
    return FakeNorvexAPI::Current();
}

// What all sessions of the fake are: a kind, under which they are scripted, and a name.
template <typename Interface> class FakeSession : public Interface {
public:
    FakeSession(std::string kind, std::string name) : m_kind(std::move(kind)), m_name(std::move(name)) {}

protected:
    // Records the call and gives the script's result, or 1.
    template <typename... Arguments> int Called(const std::string& operation, const Arguments&... arguments) {
        return CalledOr(1, operation, arguments...);
    }
    template <typename... Arguments>
    int CalledOr(int otherwise, const std::string& operation, const Arguments&... arguments) {
        Fake().NoteCall(m_kind + "." + operation, CallText::Call(m_name + "." + operation, arguments...));
        return Fake().TakeResult(m_kind + "." + operation, otherwise);
    }
    // The same for an operation with an out argument: stores what the script gives for it, if it
    // gives something.
    template <typename Number, typename... Arguments>
    int Stored(Number& out, const std::string& operation, const Arguments&... arguments) {
        const int result = Called(operation, arguments...);
        if (const auto value = Fake().TakeValue(m_kind + "." + operation))
            out = static_cast<Number>(*value);
        return result;
    }
    // The same for one with a text, which the console passes empty, as the last argument; the
    // answer is never empty, so that one which is used again shows.
    template <typename... Arguments>
    int Told(std::string& text, const std::string& operation, const Arguments&... arguments) {
        const int result = Called(operation, arguments..., text);
        text += "told";
        return result;
    }

private:
    std::string m_kind;
    std::string m_name;
};

template <typename Session, typename Interface, typename... Arguments>
int Create(const std::string& kind, Interface** out, const Arguments&... arguments) {
    const bool wasNull = *out == nullptr;
    *out = nullptr;
    return Fake().Create(kind, CallText::Call("", arguments...), wasNull,
                         [&](const std::string& name, FakeNorvexAPI::Owned& place) {
                             auto session = std::make_unique<Session>(kind, name);
                             *out = session.get();
                             place.session = std::move(session);
                         });
}

class FakeAVControl : public FakeSession<IAVControl> {
public:
    using FakeSession::FakeSession;
    int RestartVideoDecoder() override { return Called("RestartVideoDecoder"); }
    int MuteVideo(int value) override { return Called("MuteVideo", value); }
    int MuteAudio(int value) override { return Called("MuteAudio", value); }
};

class FakeDataControl : public FakeSession<IDataControl> {
public:
    using FakeSession::FakeSession;
    int CheckCaptionExist(bool* exists) override { return Stored(*exists, "CheckCaptionExist", *exists); }
};

class FakePipelineUtility : public FakeSession<IPipelineUtility> {
public:
    using FakeSession::FakeSession;
    int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                            const std::uint64_t& serviceId) override {
        return Called("NotifyReceiverState", type, receiver, state, serviceId);
    }
    int RegisterForStateChange(EStateChangeType type, const std::string& receiver, int option) override {
        return Called("RegisterForStateChange", type, receiver, option);
    }
    int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) override {
        return Called("UnregisterFromStateChange", type, receiver);
    }
    int CheckPendingState(EStateChangeType type, bool* pending) override {
        return Stored(*pending, "CheckPendingState", type, *pending);
    }
    int GetCurrentTPMSStatus(TCTPMSStatus* status) override {
        return Called("GetCurrentTPMSStatus", status != nullptr);
    }
    int NotifyReadyForSetService(int type, const std::string& application, int state,
                                 const std::uint64_t& serviceId) override {
        return Called("NotifyReadyForSetService", type, application, state, serviceId);
    }
};

class FakeReferenceCount : public FakeSession<IReferenceCount> {
public:
    using FakeSession::FakeSession;
    int GetReferenceCount(int* count) override { return Stored(*count, "GetReferenceCount", *count); }
};

class FakeScanControl : public FakeSession<IScanControl> {
public:
    using FakeSession::FakeSession;
    using Services = std::list<std::pair<std::uint64_t, std::uint32_t>>;
    int IsTuneAroundNeeded(const Services& services) override { return Called("IsTuneAroundNeeded", services); }
    int StartTuneAround(const Services& services, const std::string& caller) override {
        return Called("StartTuneAround", services, caller);
    }
    int StopManualScan() override { return Called("StopManualScan"); }
    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override {
        return Called("IsBarkerChannelScanAvailable", tvMode);
    }
    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override {
        return Called("StartBarkerChannelScan", text, tvMode);
    }
    int StopBarkerChannelScan() override { return Called("StopBarkerChannelScan"); }
};

class FakeService : public FakeSession<IService> {
public:
    using FakeSession::FakeSession;
    // "true" where the record is fresh.
    int FindService(const TCCriteriaHelper&, TCServiceData& record, int count) override {
        const auto found = Fake().TakeFound();
        const int result = CalledOr(found ? 1 : 0, "FindService", FakeRecords::IsFresh(record), count);
        if (found)
            FakeRecords::Fill(record, *found);
        return result;
    }
};

class FakeServiceGuide : public FakeSession<IServiceGuide> {
public:
    using FakeSession::FakeSession;
    // "true" where the programme is fresh.
    int GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) override {
        const auto next = Fake().TakeProgram();
        const int result = CalledOr(next ? 1 : 0, "GetCurrentProgram", serviceId, FakeRecords::IsFresh(program));
        if (next)
            FakeRecords::Fill(program, *next);
        return result;
    }
};

class FakeServiceNavigation : public FakeSession<IServiceNavigation> {
public:
    using FakeSession::FakeSession;
    int GetTvMode(TSTvMode& tvMode) override {
        const int result = Called("GetTvMode", tvMode);
        if (result > 0) {
            const auto [antennaMode, serviceMode] = Fake().GetTvMode();
            tvMode = {static_cast<EAntennaMode>(antennaMode), static_cast<EServiceMode>(serviceMode)};
        }
        return result;
    }
    // The first number is that of the records in the list as it came.
    int GetServiceList(const TCCriteriaHelper&, std::list<TCServiceData*>& records, const TSTvMode& tvMode, int first,
                       int count) override {
        const int result = Called("GetServiceList", static_cast<int>(records.size()), tvMode, first, count);
        for (const FakeRecord& record : Fake().GetServiceList()) {
            auto data = std::make_unique<TCServiceData>();
            FakeRecords::Fill(*data, record);
            records.push_back(data.release());
        }
        return result;
    }
    int SetTvMode(const TSTvMode& tvMode, std::string& text) override { return Told(text, "SetTvMode", tvMode); }
    int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId, std::string& text) override {
        return Told(text, "SetTvMode", tvMode, serviceId);
    }
    int SetDTVMode(EDTVMode mode, bool enable) override { return Called("SetDTVMode", mode, enable); }
    int SetService(const std::uint64_t& serviceId, int option, int flags, std::string& text) override {
        return Told(text, "SetService", serviceId, option, flags);
    }
    int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode, int option) override {
        return Called("SetBootupService", serviceId, tvMode, option);
    }
    int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        return Stored(*serviceId, "GetLatestVeldaServiceId", *serviceId, tvMode);
    }
    int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        return Stored(*serviceId, "GetLatestServiceId", *serviceId, tvMode);
    }
};

class FakeSourceControl : public FakeSession<ISourceControl> {
public:
    using FakeSession::FakeSession;
    int SetSource(ESource source, std::string& text) override { return Told(text, "SetSource", source); }
    int SetSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        return Told(text, "SetSource", source, serviceId);
    }
    int PreSetSourceA() override { return Called("PreSetSourceA"); }
    int StartHDMIAnalysis(ESource source) override { return Called("StartHDMIAnalysis", source); }
    int StopHDMIAnalysis(ESource source) override { return Called("StopHDMIAnalysis", source); }
    int PreSetSourceC() override { return Called("PreSetSourceC"); }
    int PreSetSourceB() override { return Called("PreSetSourceB"); }
    int SetPreviewSource(ESource source, std::string& text) override { return Told(text, "SetPreviewSource", source); }
    int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        return Told(text, "SetPreviewSource", source, serviceId);
    }
};

class FakeTunerControl : public FakeSession<ITunerControl> {
public:
    using FakeSession::FakeSession;
    int CheckTunerSignalState() override { return Called("CheckTunerSignalState"); }
};

class FakeVideoControl : public FakeSession<IVideoControl> {
public:
    using FakeSession::FakeSession;
    int SetCropVideo(TSRectInfo first, TSRectInfo second) override { return Called("SetCropVideo", first, second); }
    int SetWindowId(int* windowId) override { return Called("SetWindowId", *windowId); }
};

class FakeZoomControl : public FakeSession<IZoomControl> {
public:
    using FakeSession::FakeSession;
    int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                         const TSRectInfo& main) override {
        return Stored(windowId, "CreateZoomWindow", windowId, source, destination, main);
    }
    int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) override {
        return Called("DeleteZoomWindow", windowIds, main);
    }
    int SetZoomWindow(std::vector<int> windowIds, bool on) override { return Called("SetZoomWindow", windowIds, on); }
    int MuteZoomWindow(std::vector<int> windowIds, bool mute) override {
        return Called("MuteZoomWindow", windowIds, mute);
    }
    int IsZoomWindowStarted(int windowId, bool& started) override {
        return Stored(started, "IsZoomWindowStarted", windowId, started);
    }
    int IsZoomWindowMuted(int windowId, bool& muted) override {
        return Stored(muted, "IsZoomWindowMuted", windowId, muted);
    }
    int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                          const TSRectInfo& main) override {
        return Called("SetZoomWindowRect", windowId, source, destination, main);
    }
    int IsZoomAvailable(bool& available) override { return Stored(available, "IsZoomAvailable", available); }
    int GetZoomSharingType(int& type) override { return Stored(type, "GetZoomSharingType", type); }
    int GetConnectedZoomWindows(std::vector<int>& windowIds) override {
        const int result = Called("GetConnectedZoomWindows", windowIds);
        const std::vector<int> connected = Fake().GetZoomWindows();
        windowIds.insert(windowIds.end(), connected.begin(), connected.end());
        return result;
    }
};

} // namespace

int NorvexAPI::CreateSignalSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber) {
    return Fake().CreateSubscriber(callback, subscriber);
}
int NorvexAPI::DestroySignalSubscriber(NorvexSignalCallbackFunction callback) {
    return Fake().DestroySubscriber(callback);
}

#define FACTORY(Kind)                                                                                                  \
    int NorvexAPI::Create##Kind(I##Kind** out) {                                                                       \
        return Create<Fake##Kind>(#Kind, out);                                                                         \
    }
#define FACTORY_OF_A_PIPELINE(Kind)                                                                                    \
    int NorvexAPI::Create##Kind(EProfile profile, int screen, I##Kind** out) {                                         \
        return Create<Fake##Kind>(#Kind, out, profile, screen);                                                        \
    }
FACTORY(Service)
FACTORY(ScanControl)
FACTORY(ServiceGuide)
FACTORY_OF_A_PIPELINE(ServiceNavigation)
FACTORY_OF_A_PIPELINE(SourceControl)
FACTORY_OF_A_PIPELINE(AVControl)
FACTORY_OF_A_PIPELINE(VideoControl)
FACTORY_OF_A_PIPELINE(TunerControl)
FACTORY_OF_A_PIPELINE(ReferenceCount)
FACTORY_OF_A_PIPELINE(PipelineUtility)
FACTORY_OF_A_PIPELINE(DataControl)
FACTORY_OF_A_PIPELINE(ZoomControl)

int NorvexAPI::Destroy(INorvexSession* session) {
    return Fake().Destroy(session);
}
