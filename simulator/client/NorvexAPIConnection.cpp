#include <memory>

#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/MessageBuffer.h>

#include "DaemonClient.h"

namespace {

struct ConnectionState {
    bool makesCalls = false;
    std::shared_ptr<DaemonClient> client; // found at the first call
};

} // namespace

// The simulated TV has one signal interface; the name is ignored.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the device's declaration takes copies.
NorvexAPIConnection::NorvexAPIConnection(std::string, std::string, bool flag)
    : m_pState(new ConnectionState{flag, nullptr}) {}

NorvexAPIConnection::~NorvexAPIConnection() {
    delete static_cast<ConnectionState*>(m_pState);
}

bool NorvexAPIConnection::Exchange(const std::string& interfaceName, const std::string& method, short methodId, bool,
                                   const TCMessageBuffer& arguments, TCMessageBuffer& reply) {
    auto& state = *static_cast<ConnectionState*>(m_pState);
    reply.Clear();
    if (!state.makesCalls)
        return false;
    if (state.client == nullptr)
        state.client = DaemonClient::Find();
    const Failure failure = state.client->Call({interfaceName, method, methodId}, nullptr, arguments, reply);
    state.client->Report(failure, interfaceName, method);
    return failure == Failure::None;
}
