#pragma once

#include <norvex/client/ReferenceCount.h>

#include "SessionProxy.h"

class ReferenceCountProxy final : public SessionProxy<IReferenceCount> {
public:
    using SessionProxy::SessionProxy;

    int GetReferenceCount(int* count) override;
};
