#pragma once

#include <memory>
#include <string>
#include <utility>

#include <interfaces/Interfaces.h>

#include "RemoteCall.h"
#include "SessionConnection.h"

// A session's object on this side: each of its operations is one remote call, and its end is the
// session's. `Method` names the operations of the interface.
template <class Interface, class MethodOfInterface> class SessionProxy : public Interface {
public:
    using Method = MethodOfInterface;

    explicit SessionProxy(std::unique_ptr<SessionConnection> session)
        : m_session(std::move(session)) {}

    static std::string GetInterfaceName() { return std::string(interfaces::kTable<Method>.name); }

protected:
    SessionConnection& GetSession() { return *m_session; }

private:
    std::unique_ptr<SessionConnection> m_session;
};

// What the factories do: 0 and an object, which is made without a daemon as well and finds one
// later. Where a running daemon refuses the session there is none, and the result is the daemon's.
template <class Proxy, class Interface>
int CreateSession(int profile, int screen, Interface** object) {
    if (object == nullptr)
        return -1;
    *object = nullptr;
    auto session = std::make_unique<SessionConnection>(Proxy::GetInterfaceName(), profile, screen);
    if (session->Open() == Failure::Refused)
        return session->GetStatus();
    *object = new Proxy(std::move(session));
    return 0;
}
