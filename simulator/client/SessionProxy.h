#pragma once

#include <memory>
#include <utility>

#include "RemoteCall.h"
#include "SessionConnection.h"

// A session's object on this side: each of its operations is one remote call, and its end is the
// session's.
template <class Interface> class SessionProxy : public Interface {
public:
    explicit SessionProxy(std::unique_ptr<SessionConnection> session)
        : m_session(std::move(session)) {}

protected:
    SessionConnection& GetSession() { return *m_session; }

private:
    std::unique_ptr<SessionConnection> m_session;
};
