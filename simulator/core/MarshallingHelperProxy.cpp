#include <base/DeviceLog.h>
#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/MarshallingHelperProxy.h>

#include "ArgumentList.h"

TCMarshallingHelperProxy::TCMarshallingHelperProxy() = default;

TCMarshallingHelperProxy::~TCMarshallingHelperProxy() = default;

// The sanitizer's check of the connection's type would need the client library, with which this one
// is not linked.
__attribute__((no_sanitize("vptr"))) bool TCMarshallingHelperProxy::Run(NorvexAPIConnection* connection,
                                                                        std::string& interfaceName,
                                                                        const std::string& method, short methodId,
                                                                        bool flag) {
    if (connection == nullptr)
        return false;
    auto& arguments = *static_cast<ArgumentList*>(m_pState);
    if (!arguments.Encode()) {
        devicelog::Print("norvex-core", "the arguments of %s.%s cannot be written", interfaceName.c_str(),
                         method.c_str());
        return false;
    }
    if (!connection->Exchange(interfaceName, method, methodId, flag, arguments.GetCall(), arguments.GetReply()))
        return false;
    if (!arguments.Decode()) {
        devicelog::Print("norvex-core", "the reply to %s.%s cannot be read", interfaceName.c_str(), method.c_str());
        return false;
    }
    return true;
}
