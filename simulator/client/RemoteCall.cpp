#include "RemoteCall.h"

#include "SessionConnection.h"

RemoteCall::RemoteCall(SessionConnection& session, std::string_view method, short methodId)
    : m_session(session), m_method(method), m_methodId(methodId) {
    m_helper.PushValue(MARSHALLING_OUT, sizeof m_status, &m_status);
}

int RemoteCall::Make() {
    const bool exchanged = m_helper.Run(&m_session, m_session.GetInterfaceName(), m_method, m_methodId, false);
    return exchanged ? m_status : -1;
}
