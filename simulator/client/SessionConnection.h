#pragma once

#include <memory>
#include <string>

#include <norvex/client/NorvexAPIConnection.h>

#include "DaemonClient.h"

// The connection of one session: adds the session to each call. The session is opened when first
// needed, and again after each restart of the daemon, so that an object outlives the daemon. The
// destructor closes it.
class SessionConnection final : public NorvexAPIConnection {
public:
    // `profile` and `screen` address the pipeline; 0, 0 without a pipeline.
    SessionConnection(std::string interfaceName, int profile, int screen);
    ~SessionConnection() override;

    // Opens the session now. If it is refused, GetStatus returns the reason, below 0. After any
    // other failure it is opened later.
    Failure Open();
    // The same without a line in the log, for repeated attempts.
    Failure OpenQuietly() { return m_daemon->Open(m_key); }
    // Closes the session; the next call opens another.
    void Close();
    int GetStatus() const { return m_key.status; }
    // The daemon's number of the session, and the generation in which it is valid; see
    // DaemonClient.
    std::uint32_t GetSession() const { return m_key.id; }
    std::uint64_t GetGeneration() const { return m_key.generation; }

    std::string& GetInterfaceName() { return m_key.interfaceName; }
    const std::shared_ptr<DaemonClient>& GetDaemon() const { return m_daemon; }

    bool Exchange(const std::string& interfaceName, const std::string& method, short methodId, bool flag,
                  const TCMessageBuffer& arguments, TCMessageBuffer& reply) override;

private:
    std::shared_ptr<DaemonClient> m_daemon;
    SessionKey m_key;
};
