#include <norvex/client/NorvexAPI.h>

#include <memory>
#include <utility>

#include "AVControlProxy.h"
#include "DataControlProxy.h"
#include "PipelineUtilityProxy.h"
#include "ReferenceCountProxy.h"
#include "ScanControlProxy.h"
#include "ServiceGuideProxy.h"
#include "ServiceNavigationProxy.h"
#include "ServiceProxy.h"
#include "SessionConnection.h"
#include "SignalRegistry.h"
#include "SignalSubscriber.h"
#include "SourceControlProxy.h"
#include "TunerControlProxy.h"
#include "VideoControlProxy.h"
#include "ZoomControlProxy.h"

namespace {

// An object is made without a daemon, too, and finds one later; only where a running daemon refuses
// the session there is none.
template <class Proxy, class Interface>
int Create(const char* interfaceName, int profile, int screen, Interface** object) {
    if (object == nullptr)
        return -1;
    *object = nullptr;
    auto session = std::make_unique<SessionConnection>(interfaceName, profile, screen);
    if (session->Open() == Failure::Refused)
        return session->GetStatus();
    *object = new Proxy(std::move(session));
    return 0;
}

} // namespace

int NorvexAPI::CreateSignalSubscriber(NorvexSignalCallbackFunction callback,
                                      ISignalSubscriber** subscriber) {
    if (callback == nullptr || subscriber == nullptr)
        return -1;
    *subscriber = nullptr;
    const std::shared_ptr<SignalSubscriber> added = SignalRegistry::Get().Add(callback);
    if (added == nullptr)
        return -1;
    if (const int status = added->Start(); status < 0) {
        DestroySignalSubscriber(callback);
        return status;
    }
    *subscriber = added.get();
    return 0;
}

int NorvexAPI::DestroySignalSubscriber(NorvexSignalCallbackFunction callback) {
    const std::shared_ptr<SignalSubscriber> removed = SignalRegistry::Get().Remove(callback);
    if (removed == nullptr)
        return -1;
    removed->End();
    return 0;
}

int NorvexAPI::CreateService(IService** service) {
    return Create<ServiceProxy>("com.holvi.IService", 0, 0, service);
}

int NorvexAPI::CreateServiceNavigation(EProfile profile, int screen,
                                       IServiceNavigation** navigation) {
    return Create<ServiceNavigationProxy>("com.holvi.IServiceNavigation", profile, screen,
                                          navigation);
}

int NorvexAPI::CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl) {
    return Create<SourceControlProxy>("com.holvi.ISourceControl", profile, screen, sourceControl);
}

int NorvexAPI::CreateAVControl(EProfile profile, int screen, IAVControl** avControl) {
    return Create<AVControlProxy>("com.holvi.IAVControl", profile, screen, avControl);
}

int NorvexAPI::CreateVideoControl(EProfile profile, int screen, IVideoControl** videoControl) {
    return Create<VideoControlProxy>("com.holvi.IVideoControl", profile, screen, videoControl);
}

int NorvexAPI::CreateTunerControl(EProfile profile, int screen, ITunerControl** tunerControl) {
    return Create<TunerControlProxy>("com.holvi.ITunerControl", profile, screen, tunerControl);
}

int NorvexAPI::CreateReferenceCount(EProfile profile, int screen,
                                    IReferenceCount** referenceCount) {
    return Create<ReferenceCountProxy>("com.holvi.IReferenceCount", profile, screen,
                                       referenceCount);
}

int NorvexAPI::CreatePipelineUtility(EProfile profile, int screen,
                                     IPipelineUtility** pipelineUtility) {
    return Create<PipelineUtilityProxy>("com.holvi.IPipelineUtility", profile, screen,
                                        pipelineUtility);
}

int NorvexAPI::CreateDataControl(EProfile profile, int screen, IDataControl** dataControl) {
    return Create<DataControlProxy>("com.holvi.IDataControl", profile, screen, dataControl);
}

int NorvexAPI::CreateZoomControl(EProfile profile, int screen, IZoomControl** zoomControl) {
    return Create<ZoomControlProxy>("com.holvi.IZoomControl", profile, screen, zoomControl);
}

int NorvexAPI::CreateScanControl(IScanControl** scanControl) {
    return Create<ScanControlProxy>("com.holvi.IScanControl", 0, 0, scanControl);
}

int NorvexAPI::CreateServiceGuide(IServiceGuide** serviceGuide) {
    return Create<ServiceGuideProxy>("com.holvi.IServiceGuide", 0, 0, serviceGuide);
}

int NorvexAPI::Destroy(INorvexSession* session) {
    if (session == nullptr)
        return -1;
    delete session;
    return 0;
}
