#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "DaemonConnection.h"
#include "Environment.h"

class TCMessageBuffer;

// A session as DaemonClient opens it: its interface and pipeline, and whether it is open in the
// daemon's current run.
struct SessionKey {
    std::string interfaceName;
    int profile = 0;
    int screen = 0;
    // Valid while `generation` is that of the connection used for the call.
    std::uint32_t id = 0;
    std::uint64_t generation = 0;
    // The daemon's answer to the last attempt to open it.
    int status = 0;
};

// The daemon as this process sees it: the idle connections, and whether it responds. Shared by all
// connections of the process to one socket, since they reach the same daemon: when it does not
// respond to one of them, the others need not wait to find out.
//
// Any thread; each call has its own connection.
class DaemonClient {
public:
    // The client for the socket that the environment names now. Its connections are closed with the
    // last reference.
    static std::shared_ptr<DaemonClient> Find();

    explicit DaemonClient(std::string path);
    DaemonClient(const DaemonClient&) = delete;
    DaemonClient& operator=(const DaemonClient&) = delete;

    struct Target {
        const std::string& interfaceName;
        const std::string& method;
        std::int16_t methodId;
    };
    // Makes a call; with a session, a call of that session, which is opened first if the daemon
    // does not know it (any more). Only one call with the same session at a time.
    Failure Call(const Target& target, SessionKey* session, const TCMessageBuffer& arguments, TCMessageBuffer& reply);
    // Opens the session if needed, without a call.
    Failure Open(SessionKey& session);
    // Closes the session if it is open in the daemon's current run. The result is ignored.
    void Close(SessionKey& session);

    // A connection for signals, after its welcome. Null on failure.
    std::unique_ptr<DaemonConnection> OpenSignals(std::uint32_t session, Failure& failure);

    // Closes the idle connections: the daemon may have closed them.
    void DropIdle();

    const std::string& GetPath() const { return m_path; }
    const Limits& GetLimits() const { return m_limits; }

    // Writes a line to the log: what failed, and how.
    void Report(Failure failure, const std::string& interfaceName, const std::string& method) const;

private:
    template <class Step> Failure WithConnection(Step step);
    std::unique_ptr<DaemonConnection> Take(Failure& failure);
    std::unique_ptr<DaemonConnection> Connect(const DaemonConnection::Purpose& purpose, Failure& failure);
    std::unique_ptr<DaemonConnection> TakeProbed(Failure& failure);
    void GiveBack(std::unique_ptr<DaemonConnection> connection);
    void BecomeStalled(std::unique_ptr<DaemonConnection> probe);
    void Adopt(DaemonConnection& connection);
    Failure OpenOn(DaemonConnection& connection, SessionKey& session);

    const std::string m_path;
    const Limits m_limits;
    std::atomic<std::uint32_t> m_serial{0};

    std::mutex m_mutex;
    std::vector<std::unique_ptr<DaemonConnection>> m_idle;
    // After a time-out, until the hello on the probe is answered.
    bool m_isStalled = false;
    std::unique_ptr<DaemonConnection> m_probe;
    // The run of the daemon and the client number of the connections. The generation increases when
    // either changes: sessions of an earlier one are lost.
    std::uint64_t m_epoch = 0;
    std::uint32_t m_client = 0;
    std::uint64_t m_generation = 0;
};
