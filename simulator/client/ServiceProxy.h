#pragma once

#include <norvex/client/Service.h>

#include "SessionProxy.h"

class ServiceProxy final : public SessionProxy<IService> {
public:
    using SessionProxy::SessionProxy;

    int FindService(const TCCriteriaHelper& criteria, TCServiceData& record, int count) override;
};
