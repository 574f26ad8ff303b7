#pragma once

#include <norvex/client/Signal.h>
#include <norvex/core/Export.h>

// Chooses which of the TV's own signals reach the registered callback. Subscriptions are counted
// for each signal. Made and released with the callback (NorvexAPI::CreateSignalSubscriber,
// DestroySignalSubscriber).
class NORVEX_API ISignalSubscriber {
public:
    virtual ~ISignalSubscriber();
    // `mode`, `filter`, `profile` and `screen` narrow the subscription on models that can; 0, 702,
    // 0, 0 is all.
    virtual int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) = 0;
    virtual int Unsubscribe(ESignalType type, int filter, int profile, int screen) = 0;
};
