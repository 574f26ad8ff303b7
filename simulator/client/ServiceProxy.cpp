#include <norvex/client/NorvexAPI.h>
#include <norvex/client/Service.h>

#include "SessionProxy.h"

namespace {

class ServiceProxy final : public SessionProxy<IService, interfaces::ServiceMethod> {
public:
    using SessionProxy::SessionProxy;

    int FindService(const TCCriteriaHelper& criteria, TCServiceData& record, int count) override {
        return Call(Method::FindService).In(criteria).Out(record).In(count).Make();
    }
};

} // namespace

int NorvexAPI::CreateService(IService** service) {
    return CreateSession<ServiceProxy>(0, 0, service);
}
