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
#include "FakeRecords.h"
#include "Timeline.h"

INorvexSession::~INorvexSession() = default;
ISignalSubscriber::~ISignalSubscriber() = default;

namespace {

FakeNorvexAPI& fake() {
    return FakeNorvexAPI::current();
}

// What all sessions of the fake are: a kind, under which they are scripted, and a name.
template <typename Interface> class FakeSession : public Interface {
public:
    FakeSession(std::string kind, std::string name)
        : m_kind(std::move(kind)), m_name(std::move(name)) {}

protected:
    // Records the call and gives the script's result, or 1.
    template <typename... Arguments>
    int called(const std::string& operation, const Arguments&... arguments) {
        return calledOr(1, operation, arguments...);
    }
    template <typename... Arguments>
    int calledOr(int otherwise, const std::string& operation, const Arguments&... arguments) {
        fake().called(m_kind + "." + operation,
                      CallText::call(m_name + "." + operation, arguments...));
        return fake().result(m_kind + "." + operation, otherwise);
    }
    // Stores what the script gives for the operation, if it gives something.
    template <typename Number> void store(const std::string& operation, Number& out) {
        if (const auto value = fake().value(m_kind + "." + operation))
            out = static_cast<Number>(*value);
    }

private:
    std::string m_kind;
    std::string m_name;
};

// A text that the console passes as an empty one; the answer is never empty, so that one which is
// used again shows.
struct Told {
    explicit Told(std::string& text) : m_text(text) {}
    ~Told() { m_text += "told"; }
    std::string& m_text;
};

template <typename Session, typename Interface, typename... Arguments>
int create(const std::string& kind, Interface** out, const Arguments&... arguments) {
    const std::string factory = "Create" + kind;
    const bool wasNull = *out == nullptr;
    const FakeNorvexAPI::Creation creation = fake().nextCreation(factory);
    *out = nullptr;
    if (creation.withObject) {
        const std::string name = fake().nameFor(kind);
        auto session = std::make_unique<Session>(kind, name);
        *out = session.get();
        fake().own(name, std::move(session));
    }
    fake().called(factory, CallText::call(factory, arguments...) +
                               (wasNull ? "" : " into a pointer that was not null"));
    return creation.result;
}

class FakeAVControl : public FakeSession<IAVControl> {
public:
    using FakeSession::FakeSession;
    int RestartVideoDecoder() override { return called("RestartVideoDecoder"); }
    int MuteVideo(int value) override { return called("MuteVideo", value); }
    int MuteAudio(int value) override { return called("MuteAudio", value); }
};

class FakeDataControl : public FakeSession<IDataControl> {
public:
    using FakeSession::FakeSession;
    int CheckCaptionExist(bool* exists) override {
        const int result = called("CheckCaptionExist", *exists);
        store("CheckCaptionExist", *exists);
        return result;
    }
};

class FakePipelineUtility : public FakeSession<IPipelineUtility> {
public:
    using FakeSession::FakeSession;
    int NotifyReceiverState(EStateChangeType type, const std::string& receiver, int state,
                            const std::uint64_t& serviceId) override {
        return called("NotifyReceiverState", type, receiver, state, serviceId);
    }
    int RegisterForStateChange(EStateChangeType type, const std::string& receiver,
                               int option) override {
        return called("RegisterForStateChange", type, receiver, option);
    }
    int UnregisterFromStateChange(EStateChangeType type, const std::string& receiver) override {
        return called("UnregisterFromStateChange", type, receiver);
    }
    int CheckPendingState(EStateChangeType type, bool* pending) override {
        const int result = called("CheckPendingState", type, *pending);
        store("CheckPendingState", *pending);
        return result;
    }
    int GetCurrentTPMSStatus(TCTPMSStatus* status) override {
        return called("GetCurrentTPMSStatus", status != nullptr);
    }
    int NotifyReadyForSetService(int type, const std::string& application, int state,
                                 const std::uint64_t& serviceId) override {
        return called("NotifyReadyForSetService", type, application, state, serviceId);
    }
};

class FakeReferenceCount : public FakeSession<IReferenceCount> {
public:
    using FakeSession::FakeSession;
    int GetReferenceCount(int* count) override {
        const int result = called("GetReferenceCount", *count);
        store("GetReferenceCount", *count);
        return result;
    }
};

class FakeScanControl : public FakeSession<IScanControl> {
public:
    using FakeSession::FakeSession;
    using Services = std::list<std::pair<std::uint64_t, std::uint32_t>>;
    int IsTuneAroundNeeded(const Services& services) override {
        return called("IsTuneAroundNeeded", services);
    }
    int StartTuneAround(const Services& services, const std::string& caller) override {
        return called("StartTuneAround", services, caller);
    }
    int StopManualScan() override { return called("StopManualScan"); }
    int IsBarkerChannelScanAvailable(const TSTvMode& tvMode) override {
        return called("IsBarkerChannelScanAvailable", tvMode);
    }
    int StartBarkerChannelScan(const std::string& text, const TSTvMode& tvMode) override {
        return called("StartBarkerChannelScan", text, tvMode);
    }
    int StopBarkerChannelScan() override { return called("StopBarkerChannelScan"); }
};

class FakeService : public FakeSession<IService> {
public:
    using FakeSession::FakeSession;
    // "true" where the record is fresh.
    int FindService(const TCCriteriaHelper&, TCServiceData& record, int count) override {
        const auto found = fake().found();
        const int result =
            calledOr(found ? 1 : 0, "FindService", FakeRecords::isFresh(record), count);
        if (found)
            FakeRecords::fill(record, *found);
        return result;
    }
};

class FakeServiceGuide : public FakeSession<IServiceGuide> {
public:
    using FakeSession::FakeSession;
    // "true" where the programme is fresh.
    int GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) override {
        const auto next = fake().nextProgram();
        const int result =
            calledOr(next ? 1 : 0, "GetCurrentProgram", serviceId, FakeRecords::isFresh(program));
        if (next)
            FakeRecords::fill(program, *next);
        return result;
    }
};

class FakeServiceNavigation : public FakeSession<IServiceNavigation> {
public:
    using FakeSession::FakeSession;
    int GetTvMode(TSTvMode& tvMode) override {
        const int result = called("GetTvMode", tvMode);
        if (result > 0) {
            const auto [antennaMode, serviceMode] = fake().tvMode();
            tvMode = {static_cast<EAntennaMode>(antennaMode),
                      static_cast<EServiceMode>(serviceMode)};
        }
        return result;
    }
    // The first number is that of the records in the list as it came.
    int GetServiceList(const TCCriteriaHelper&, std::list<TCServiceData*>& records,
                       const TSTvMode& tvMode, int first, int count) override {
        const int result =
            called("GetServiceList", static_cast<int>(records.size()), tvMode, first, count);
        for (const FakeRecord& record : fake().serviceList()) {
            auto data = std::make_unique<TCServiceData>();
            FakeRecords::fill(*data, record);
            records.push_back(data.release());
        }
        return result;
    }
    int SetTvMode(const TSTvMode& tvMode, std::string& text) override {
        const Told told(text);
        return called("SetTvMode", tvMode, text);
    }
    int SetTvMode(const TSTvMode& tvMode, const std::uint64_t& serviceId,
                  std::string& text) override {
        const Told told(text);
        return called("SetTvMode", tvMode, serviceId, text);
    }
    int SetDTVMode(EDTVMode mode, bool enable) override {
        return called("SetDTVMode", mode, enable);
    }
    int SetService(const std::uint64_t& serviceId, int option, int flags,
                   std::string& text) override {
        const Told told(text);
        return called("SetService", serviceId, option, flags, text);
    }
    int SetBootupService(const std::uint64_t& serviceId, const TSTvMode& tvMode,
                         int option) override {
        return called("SetBootupService", serviceId, tvMode, option);
    }
    int GetLatestVeldaServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        const int result = called("GetLatestVeldaServiceId", *serviceId, tvMode);
        store("GetLatestVeldaServiceId", *serviceId);
        return result;
    }
    int GetLatestServiceId(unsigned long long* serviceId, TSTvMode tvMode) override {
        const int result = called("GetLatestServiceId", *serviceId, tvMode);
        store("GetLatestServiceId", *serviceId);
        return result;
    }
};

class FakeSourceControl : public FakeSession<ISourceControl> {
public:
    using FakeSession::FakeSession;
    int SetSource(ESource source, std::string& text) override {
        const Told told(text);
        return called("SetSource", source, text);
    }
    int SetSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        const Told told(text);
        return called("SetSource", source, serviceId, text);
    }
    int PreSetSourceA() override { return called("PreSetSourceA"); }
    int StartHDMIAnalysis(ESource source) override { return called("StartHDMIAnalysis", source); }
    int StopHDMIAnalysis(ESource source) override { return called("StopHDMIAnalysis", source); }
    int PreSetSourceC() override { return called("PreSetSourceC"); }
    int PreSetSourceB() override { return called("PreSetSourceB"); }
    int SetPreviewSource(ESource source, std::string& text) override {
        const Told told(text);
        return called("SetPreviewSource", source, text);
    }
    int SetPreviewSource(ESource source, std::uint64_t serviceId, std::string& text) override {
        const Told told(text);
        return called("SetPreviewSource", source, serviceId, text);
    }
};

class FakeTunerControl : public FakeSession<ITunerControl> {
public:
    using FakeSession::FakeSession;
    int CheckTunerSignalState() override { return called("CheckTunerSignalState"); }
};

class FakeVideoControl : public FakeSession<IVideoControl> {
public:
    using FakeSession::FakeSession;
    int SetCropVideo(TSRectInfo first, TSRectInfo second) override {
        return called("SetCropVideo", first, second);
    }
    int SetWindowId(int* windowId) override { return called("SetWindowId", *windowId); }
};

class FakeZoomControl : public FakeSession<IZoomControl> {
public:
    using FakeSession::FakeSession;
    int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                         const TSRectInfo& main) override {
        const int result = called("CreateZoomWindow", windowId, source, destination, main);
        store("CreateZoomWindow", windowId);
        return result;
    }
    int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) override {
        return called("DeleteZoomWindow", windowIds, main);
    }
    int SetZoomWindow(std::vector<int> windowIds, bool on) override {
        return called("SetZoomWindow", windowIds, on);
    }
    int MuteZoomWindow(std::vector<int> windowIds, bool mute) override {
        return called("MuteZoomWindow", windowIds, mute);
    }
    int IsZoomWindowStarted(int windowId, bool& started) override {
        const int result = called("IsZoomWindowStarted", windowId, started);
        store("IsZoomWindowStarted", started);
        return result;
    }
    int IsZoomWindowMuted(int windowId, bool& muted) override {
        const int result = called("IsZoomWindowMuted", windowId, muted);
        store("IsZoomWindowMuted", muted);
        return result;
    }
    int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                          const TSRectInfo& main) override {
        return called("SetZoomWindowRect", windowId, source, destination, main);
    }
    int IsZoomAvailable(bool& available) override {
        const int result = called("IsZoomAvailable", available);
        store("IsZoomAvailable", available);
        return result;
    }
    int GetZoomSharingType(int& type) override {
        const int result = called("GetZoomSharingType", type);
        store("GetZoomSharingType", type);
        return result;
    }
    int GetConnectedZoomWindows(std::vector<int>& windowIds) override {
        const int result = called("GetConnectedZoomWindows", windowIds);
        const std::vector<int> connected = fake().zoomWindows();
        windowIds.insert(windowIds.end(), connected.begin(), connected.end());
        return result;
    }
};

} // namespace

int NorvexAPI::CreateSignalSubscriber(NorvexSignalCallbackFunction callback,
                                      ISignalSubscriber** subscriber) {
    return fake().createSubscriber(callback, subscriber);
}
int NorvexAPI::DestroySignalSubscriber(NorvexSignalCallbackFunction callback) {
    return fake().destroySubscriber(callback);
}
int NorvexAPI::CreateService(IService** service) {
    return create<FakeService>("Service", service);
}
int NorvexAPI::CreateServiceNavigation(EProfile profile, int screen,
                                       IServiceNavigation** navigation) {
    return create<FakeServiceNavigation>("ServiceNavigation", navigation, profile, screen);
}
int NorvexAPI::CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl) {
    return create<FakeSourceControl>("SourceControl", sourceControl, profile, screen);
}
int NorvexAPI::CreateAVControl(EProfile profile, int screen, IAVControl** avControl) {
    return create<FakeAVControl>("AVControl", avControl, profile, screen);
}
int NorvexAPI::CreateVideoControl(EProfile profile, int screen, IVideoControl** videoControl) {
    return create<FakeVideoControl>("VideoControl", videoControl, profile, screen);
}
int NorvexAPI::CreateTunerControl(EProfile profile, int screen, ITunerControl** tunerControl) {
    return create<FakeTunerControl>("TunerControl", tunerControl, profile, screen);
}
int NorvexAPI::CreateReferenceCount(EProfile profile, int screen,
                                    IReferenceCount** referenceCount) {
    return create<FakeReferenceCount>("ReferenceCount", referenceCount, profile, screen);
}
int NorvexAPI::CreatePipelineUtility(EProfile profile, int screen,
                                     IPipelineUtility** pipelineUtility) {
    return create<FakePipelineUtility>("PipelineUtility", pipelineUtility, profile, screen);
}
int NorvexAPI::CreateDataControl(EProfile profile, int screen, IDataControl** dataControl) {
    return create<FakeDataControl>("DataControl", dataControl, profile, screen);
}
int NorvexAPI::CreateZoomControl(EProfile profile, int screen, IZoomControl** zoomControl) {
    return create<FakeZoomControl>("ZoomControl", zoomControl, profile, screen);
}
int NorvexAPI::CreateScanControl(IScanControl** scanControl) {
    return create<FakeScanControl>("ScanControl", scanControl);
}
int NorvexAPI::CreateServiceGuide(IServiceGuide** serviceGuide) {
    return create<FakeServiceGuide>("ServiceGuide", serviceGuide);
}
int NorvexAPI::Destroy(INorvexSession* session) {
    return fake().destroy(session);
}
