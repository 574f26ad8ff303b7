#include <norvex/client/NorvexAPI.h>
#include <norvex/client/TunerControl.h>

#include "SessionProxy.h"

namespace {

class TunerControlProxy final : public SessionProxy<ITunerControl, interfaces::TunerControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int CheckTunerSignalState() override { return Call(Method::CheckTunerSignalState).Make(); }
};

} // namespace

int NorvexAPI::CreateTunerControl(EProfile profile, int screen, ITunerControl** tunerControl) {
    return CreateSession<TunerControlProxy>(profile, screen, tunerControl);
}
