#include "SessionConnection.h"

#include <utility>

#include <norvex/core/MessageBuffer.h>

SessionConnection::SessionConnection(std::string interfaceName, int profile, int screen)
    : NorvexAPIConnection({}, {}, true), m_daemon(DaemonClient::Find()) {
    m_key.interfaceName = std::move(interfaceName);
    m_key.profile = profile;
    m_key.screen = screen;
}

SessionConnection::~SessionConnection() {
    Close();
}

void SessionConnection::Close() {
    if (m_key.generation != 0)
        m_daemon->Close(m_key);
}

Failure SessionConnection::Open() {
    const Failure failure = OpenQuietly();
    m_daemon->Report(failure, m_key.interfaceName, "Open");
    return failure;
}

bool SessionConnection::Exchange(const std::string& interfaceName, const std::string& method, short methodId, bool,
                                 const TCMessageBuffer& arguments, TCMessageBuffer& reply) {
    reply.Clear();
    const Failure failure = m_daemon->Call({interfaceName, method, methodId}, &m_key, arguments, reply);
    m_daemon->Report(failure, interfaceName, method);
    return failure == Failure::None;
}
