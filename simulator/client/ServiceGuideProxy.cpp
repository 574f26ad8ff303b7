#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ServiceGuide.h>

#include "SessionProxy.h"

namespace {

class ServiceGuideProxy final : public SessionProxy<IServiceGuide, interfaces::ServiceGuideMethod> {
public:
    using SessionProxy::SessionProxy;

    int GetCurrentProgram(const std::uint64_t& serviceId, TCProgramData& program) override {
        return Call(Method::GetCurrentProgram).In(serviceId).Out(program).Make();
    }
};

} // namespace

int NorvexAPI::CreateServiceGuide(IServiceGuide** serviceGuide) {
    return CreateSession<ServiceGuideProxy>(0, 0, serviceGuide);
}
