#pragma once

#include <norvex/client/NorvexSession.h>

// A pipeline's tuner.
class NORVEX_API ITunerControl : public INorvexSession {
public:
    // 1 or more: a signal is present.
    virtual int CheckTunerSignalState() = 0;
};
