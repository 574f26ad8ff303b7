#include "RemoteCall.h"

#include "SessionConnection.h"

RemoteCall::RemoteCall(SessionConnection& session) : m_session(session) {
    m_helper.PushValue(MARSHALLING_OUT, sizeof m_status, &m_status);
}

int RemoteCall::Make(const std::string& method, short methodId) {
    const bool exchanged =
        m_helper.Run(&m_session, m_session.GetInterfaceName(), method, methodId, false);
    return exchanged ? m_status : -1;
}
