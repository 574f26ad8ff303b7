#pragma once

#include <norvex/client/DataControl.h>

#include "SessionProxy.h"

class DataControlProxy final : public SessionProxy<IDataControl> {
public:
    using SessionProxy::SessionProxy;

    int CheckCaptionExist(bool* exists) override;
};
