#pragma once

#include <functional>
#include <string>

#include <sys/stat.h>

#include "EventSources.h"

namespace sim {

// The exclusive right to listen on a path: a lock on "PATH.lock", so that of two daemons that start
// at once exactly one gets it, and a crashed one does not block the path. A file of that name that is not such a lock is
// left alone.
class PathClaim {
public:
    PathClaim() = default;
    ~PathClaim();
    PathClaim(const PathClaim&) = delete;
    PathClaim& operator=(const PathClaim&) = delete;

    // False if another process holds the path, or the lock cannot be created; `error` is a line.
    bool Take(const std::string& path, std::string& error);

private:
    std::string m_lockPath;
    int m_lock = -1;
};

// A listening socket that only accepts this user's processes. Replaces a stale socket at the path,
// so the path must have been claimed. At its end it removes the socket, unless another one is there.
class Listener {
public:
    // Takes ownership of the descriptor, unless it throws std::system_error; non-blocking,
    // close-on-exec.
    using Accepted = std::function<void(int fd)>;
    using Report = std::function<void(const std::string& line)>;

    Listener() = default;
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // `type` is SOCK_SEQPACKET or SOCK_STREAM. `report` gets a line for each rejected connection.
    bool Open(const std::string& path, int type, Accepted accepted, Report report, std::string& error);

    // Maximum length of a socket's path.
    static const std::size_t kMaxPath;

private:
    void Accept();

    std::string m_path;
    struct stat m_file {}; // of the socket at the path
    int m_socket = -1;
    FdWatch m_watch;
    Timer m_pause;
    Accepted m_accepted;
    Report m_report;
    bool m_shortageReported = false;
};

} // namespace sim
