#pragma once

#include <norvex/client/TunerControl.h>

#include "SessionProxy.h"

class TunerControlProxy final : public SessionProxy<ITunerControl> {
public:
    using SessionProxy::SessionProxy;

    int CheckTunerSignalState() override;
};
