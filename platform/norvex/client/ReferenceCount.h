#pragma once

#include <norvex/client/NorvexSession.h>

// How many sessions hold a pipeline.
class NORVEX_API IReferenceCount : public INorvexSession {
public:
    virtual int GetReferenceCount(int* count) = 0;
};
