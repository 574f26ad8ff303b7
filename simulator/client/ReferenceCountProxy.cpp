#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ReferenceCount.h>

#include "SessionProxy.h"

namespace {

class ReferenceCountProxy final : public SessionProxy<IReferenceCount, interfaces::ReferenceCountMethod> {
public:
    using SessionProxy::SessionProxy;

    int GetReferenceCount(int* count) override {
        if (count == nullptr)
            return -1;
        return Call(Method::GetReferenceCount).Out(*count).Make();
    }
};

} // namespace

int NorvexAPI::CreateReferenceCount(EProfile profile, int screen, IReferenceCount** referenceCount) {
    return CreateSession<ReferenceCountProxy>(profile, screen, referenceCount);
}
