#pragma once

#include <string>

#include <norvex/core/Export.h>

class TCMessageBuffer;

// A connection to the middleware. Creating one does not connect yet: it connects on the first
// exchange, and again on the first one after a failure.
//
// One thread at a time.
class NORVEX_API NorvexAPIConnection {
public:
    // `interfaceName` and `objectPath` name the signal interface of the middleware; `flag` is true
    // for a connection that makes calls.
    NorvexAPIConnection(std::string interfaceName, std::string objectPath, bool flag);
    virtual ~NorvexAPIConnection();
    NorvexAPIConnection(const NorvexAPIConnection&) = delete;
    NorvexAPIConnection& operator=(const NorvexAPIConnection&) = delete;

    // Makes one call: sends `arguments` (an argument tree) and puts the reply's tree into `reply`.
    // Blocks at most for the connect and call limits. False, and a line in the log that tells
    // whether the middleware was absent, unresponsive or gone, when there is no reply; `reply` is
    // then empty. The marshalling library reaches the middleware only through this.
    virtual bool Exchange(const std::string& interfaceName, const std::string& method, short methodId, bool flag,
                          const TCMessageBuffer& arguments, TCMessageBuffer& reply);

private:
    void* m_pState;
};
