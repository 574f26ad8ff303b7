#pragma once

#include <norvex/client/NorvexSession.h>
#include <norvex/client/Profile.h>
#include <norvex/client/Signal.h>
#include <norvex/core/Export.h>

class IAVControl;
class IDataControl;
class IPipelineUtility;
class IReferenceCount;
class IScanControl;
class IService;
class IServiceGuide;
class IServiceNavigation;
class ISignalSubscriber;
class ISourceControl;
class ITunerControl;
class IVideoControl;
class IZoomControl;

// The middleware's factories. Each returns 0 on success and stores a new object, which the caller
// releases with Destroy; on failure it returns a number below 0 and stores null. `profile` and
// `screen` address the pipeline.
class NORVEX_API NorvexAPI {
public:
    // Registers `callback` and stores its subscriber. A callback can be registered only once at a
    // time.
    static int CreateSignalSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber);
    // Unregisters the callback and deletes its subscriber. Waits for a call in progress on another
    // thread; none follows.
    static int DestroySignalSubscriber(NorvexSignalCallbackFunction callback);

    static int CreateService(IService** service);
    static int CreateServiceNavigation(EProfile profile, int screen, IServiceNavigation** navigation);
    static int CreateSourceControl(EProfile profile, int screen, ISourceControl** sourceControl);
    static int CreateAVControl(EProfile profile, int screen, IAVControl** avControl);
    static int CreateVideoControl(EProfile profile, int screen, IVideoControl** videoControl);
    static int CreateTunerControl(EProfile profile, int screen, ITunerControl** tunerControl);
    static int CreateReferenceCount(EProfile profile, int screen, IReferenceCount** referenceCount);
    static int CreatePipelineUtility(EProfile profile, int screen, IPipelineUtility** pipelineUtility);
    static int CreateDataControl(EProfile profile, int screen, IDataControl** dataControl);
    static int CreateZoomControl(EProfile profile, int screen, IZoomControl** zoomControl);
    static int CreateScanControl(IScanControl** scanControl);
    static int CreateServiceGuide(IServiceGuide** serviceGuide);

    // Ends the session and deletes the object. Null is an error.
    static int Destroy(INorvexSession* session);
};
