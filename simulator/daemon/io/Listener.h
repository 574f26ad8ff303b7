#pragma once

#include <functional>
#include <string>

#include "EventSources.h"

namespace sim {

// The one right to listen on a path: held by a lock on "PATH.lock", so that of two daemons that
// start at once exactly one gets it, and one that died leaves nothing in the way.
class PathClaim {
public:
    PathClaim() = default;
    ~PathClaim();
    PathClaim(const PathClaim&) = delete;
    PathClaim& operator=(const PathClaim&) = delete;

    // False when another process holds the path, or the lock cannot be made; `error` is a line.
    bool Take(const std::string& path, std::string& error);

private:
    std::string m_lockPath;
    int m_lock = -1;
};

// A listening socket that only this user's processes get through. Takes the place of a socket that
// is left over on the path, so the path must have been claimed.
class Listener {
public:
    // Owns the descriptor from then on, unless it throws std::system_error; non-blocking,
    // close-on-exec.
    using Accepted = std::function<void(int fd)>;
    using Told = std::function<void(const std::string& line)>;

    Listener() = default;
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // `type` is SOCK_SEQPACKET or SOCK_STREAM. `told` gets a line for whoever was not let in.
    bool Open(const std::string& path, int type, Accepted accepted, Told told, std::string& error);

    // Longest path that fits into a socket's address.
    static const std::size_t kMaxPath;

private:
    void Accept();

    std::string m_path;
    int m_socket = -1;
    FdWatch m_watch;
    Timer m_pause;
    Accepted m_accepted;
    Told m_told;
    bool m_toldOfShortage = false;
};

} // namespace sim
