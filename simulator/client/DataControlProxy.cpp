#include <norvex/client/DataControl.h>
#include <norvex/client/NorvexAPI.h>

#include "SessionProxy.h"

namespace {

class DataControlProxy final : public SessionProxy<IDataControl, interfaces::DataControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int CheckCaptionExist(bool* exists) override {
        if (exists == nullptr)
            return -1;
        return Call(Method::CheckCaptionExist).Out(*exists).Make();
    }
};

} // namespace

int NorvexAPI::CreateDataControl(EProfile profile, int screen, IDataControl** dataControl) {
    return CreateSession<DataControlProxy>(profile, screen, dataControl);
}
