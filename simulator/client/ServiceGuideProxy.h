#pragma once

#include <norvex/client/ServiceGuide.h>

#include "SessionProxy.h"

class ServiceGuideProxy final : public SessionProxy<IServiceGuide> {
public:
    using SessionProxy::SessionProxy;

    int GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) override;
};
