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

// A session as DaemonClient opens it: with whom, and whether it is open under the daemon's present
// run.
struct SessionKey {
    std::string interfaceName;
    int profile = 0;
    int screen = 0;
    // Valid while `generation` is the one of the connection that the call goes by.
    std::uint32_t id = 0;
    std::uint64_t generation = 0;
    // The daemon's answer to the last attempt at opening it.
    int status = 0;
};

// The TV service as this process sees it: the connections that are ready for the next call, and
// what is known of its health. Shared by all connections of the process to one socket, since they
// reach the same daemon: when it is mute to one of them, none of the others has to find out by
// waiting.
//
// Any thread; each call has a connection of its own while it lasts.
class DaemonClient {
public:
    // The one for the socket that the environment names now. Its connections are closed when nobody
    // holds it any more.
    static std::shared_ptr<DaemonClient> Find();

    explicit DaemonClient(std::string path);
    DaemonClient(const DaemonClient&) = delete;
    DaemonClient& operator=(const DaemonClient&) = delete;

    struct Target {
        const std::string& interfaceName;
        const std::string& method;
        std::int16_t methodId;
    };
    // Makes a call; with a session, one of that session, which is opened first where the daemon
    // does not know it (any more). Not safe against a second call with the same session meanwhile.
    Failure Call(const Target& target, SessionKey* session, const TCMessageBuffer& arguments,
                 TCMessageBuffer& reply);
    // Opens the session where that is needed, and calls nothing.
    Failure Open(SessionKey& session);
    // Ends the session if it is open under the daemon's present run. Nobody learns how that went.
    void Close(SessionKey& session);

    // A connection for signals, welcomed and ready to be watched. Null on failure.
    std::unique_ptr<DaemonConnection> OpenSignals(std::uint32_t session, Failure& failure);

    // Closes the connections that wait for a call: they may have ended unseen.
    void DropIdle();

    const std::string& GetPath() const { return m_path; }
    const Limits& GetLimits() const { return m_limits; }

    // A line for the log: what failed, and in which of its ways.
    void Report(Failure failure, const std::string& interfaceName, const std::string& method) const;

private:
    template <class Step> Failure WithConnection(Step step);
    std::unique_ptr<DaemonConnection> Take(Failure& failure);
    std::unique_ptr<DaemonConnection> Connect(const DaemonConnection::Purpose& purpose,
                                              Failure& failure);
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
    // Which run of the daemon, and which of its clients, the connections belong to. The generation
    // grows when either changes: sessions of an earlier one are lost.
    std::uint64_t m_epoch = 0;
    std::uint32_t m_client = 0;
    std::uint64_t m_generation = 0;
};
