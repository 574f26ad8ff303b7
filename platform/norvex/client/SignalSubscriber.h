#pragma once

#include <norvex/client/Signal.h>
#include <norvex/core/Export.h>

// Selects which of the TV's own signals reach the registered callback. Subscriptions are counted
// per signal. Created and released together with the callback (NorvexAPI::CreateSignalSubscriber,
// DestroySignalSubscriber).
class NORVEX_API ISignalSubscriber {
public:
    virtual ~ISignalSubscriber();
    // `mode`, `filter`, `profile` and `screen` narrow the subscription on models that support it;
    // 0, 702, 0, 0 means all.
    virtual int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) = 0;
    virtual int Unsubscribe(ESignalType type, int filter, int profile, int screen) = 0;
};
