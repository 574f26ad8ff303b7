#pragma once

#include <memory>
#include <string>
#include <utility>

#include <interfaces/Interfaces.h>

#include "RemoteCall.h"
#include "SessionConnection.h"

// The client's object for a session: each operation is one remote call, and its destructor closes
// the session. `Method` is the enumeration of the interface's operations.
template <class Interface, class MethodOfInterface> class SessionProxy : public Interface {
public:
    using Method = MethodOfInterface;

    explicit SessionProxy(std::unique_ptr<SessionConnection> session) : m_session(std::move(session)) {}

    static std::string GetInterfaceName() { return std::string(interfaces::kTable<Method>.name); }

protected:
    RemoteCall Call(Method method) { return RemoteCall(*m_session, method); }

private:
    std::unique_ptr<SessionConnection> m_session;
};

// For factories: returns 0 and an object, which is also created without a daemon and finds one
// later. If a running daemon refuses the session, returns the daemon's result without an object.
template <class Proxy, class Interface> int CreateSession(int profile, int screen, Interface** object) {
    if (object == nullptr)
        return -1;
    *object = nullptr;
    auto session = std::make_unique<SessionConnection>(Proxy::GetInterfaceName(), profile, screen);
    if (session->Open() == Failure::Refused)
        return session->GetStatus();
    *object = new Proxy(std::move(session));
    return 0;
}
