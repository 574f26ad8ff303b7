#include <memory>

#include <norvex/client/NorvexAPI.h>

#include "SignalRegistry.h"
#include "SignalSubscriber.h"

int NorvexAPI::CreateSignalSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber) {
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

int NorvexAPI::Destroy(INorvexSession* session) {
    if (session == nullptr)
        return -1;
    delete session;
    return 0;
}
