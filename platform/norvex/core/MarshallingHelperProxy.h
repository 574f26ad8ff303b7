#pragma once

#include <string>

#include <norvex/core/Export.h>
#include <norvex/core/MarshallingHelper.h>

class NorvexAPIConnection;

// The caller's side of a remote call: one helper per call, on the stack.
class NORVEX_API TCMarshallingHelperProxy : public TCMarshallingHelper {
public:
    TCMarshallingHelperProxy();
    ~TCMarshallingHelperProxy() override;

    // Sends the registered arguments as a call of `method` on `interfaceName`, waits for the reply
    // and writes its values into the arguments registered as out. Blocks the calling thread, at
    // most for the connection's limits. False when the exchange failed, when the reply could not be
    // read (values read before the error stay), and for a null connection. `flag` is passed to the
    // connection unchanged.
    bool Run(NorvexAPIConnection* connection, std::string& interfaceName, const std::string& method, short methodId,
             bool flag);
};
