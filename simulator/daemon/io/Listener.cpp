#include "Listener.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace sim {

namespace {

// Pause before the next attempt when descriptors have run out.
constexpr unsigned kPauseMilliseconds = 200;
constexpr int kBacklog = 128;

std::string Describe(const std::string& path, const std::string& what) {
    return path + ": " + what;
}

} // namespace

const std::size_t Listener::kMaxPath = sizeof(sockaddr_un::sun_path) - 1;

PathClaim::~PathClaim() {
    if (m_lock < 0)
        return;
    unlink(m_lockPath.c_str());
    close(m_lock);
}

bool PathClaim::Take(const std::string& path, std::string& error) {
    m_lockPath = path + ".lock";
    for (;;) {
        const int lock = open(m_lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (lock < 0) {
            error = Describe(m_lockPath, std::generic_category().message(errno));
            return false;
        }
        if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
            error = errno == EWOULDBLOCK ? "another norvex-sim is running on " + path
                                         : Describe(m_lockPath, std::generic_category().message(errno));
            close(lock);
            return false;
        }
        // Its previous holder may have removed the file between open and lock.
        struct stat held {};
        struct stat named {};
        if (fstat(lock, &held) == 0 && stat(m_lockPath.c_str(), &named) == 0 && held.st_ino == named.st_ino &&
            held.st_dev == named.st_dev) {
            m_lock = lock;
            return true;
        }
        close(lock);
    }
}

Listener::~Listener() {
    if (m_socket < 0)
        return;
    m_watch.Stop();
    unlink(m_path.c_str());
    close(m_socket);
}

bool Listener::Open(const std::string& path, int type, Accepted accepted, Report report, std::string& error) {
    sockaddr_un address{};
    if (path.size() > kMaxPath) {
        error = Describe(path, "too long for a socket");
        return false;
    }
    struct stat there {};
    if (lstat(path.c_str(), &there) == 0) {
        if (!S_ISSOCK(there.st_mode)) {
            error = Describe(path, "exists and is not a socket");
            return false;
        }
        unlink(path.c_str());
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int fd = socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // The mode must be set from the start.
    const mode_t mask = umask(0177);
    const bool bound = fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    umask(mask);
    if (!bound || listen(fd, kBacklog) != 0) {
        error = Describe(path, std::generic_category().message(errno));
        if (bound)
            unlink(path.c_str());
        if (fd >= 0)
            close(fd);
        return false;
    }
    m_path = path;
    m_socket = fd;
    m_accepted = std::move(accepted);
    m_report = std::move(report);
    m_watch.Start(m_socket, EPOLLIN, [this](std::uint32_t) { Accept(); });
    return true;
}

void Listener::Accept() {
    for (;;) {
        const int fd = accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0 && (errno == EINTR || errno == ECONNABORTED))
            continue;
        if (fd < 0 && errno == EAGAIN)
            return;
        if (fd < 0) {
            // Out of descriptors or memory: the socket stays readable, so it is not watched for a
            // while.
            if (!m_shortageReported)
                m_report(std::string("cannot accept: ") + std::generic_category().message(errno));
            m_shortageReported = true;
            m_watch.SetEvents(0);
            m_pause.Start(kPauseMilliseconds, [this] { m_watch.SetEvents(EPOLLIN); });
            return;
        }
        m_shortageReported = false;
        ucred peer{};
        socklen_t size = sizeof peer;
        if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.uid != geteuid()) {
            m_report("refused a connection from user " + std::to_string(peer.uid));
            close(fd);
            continue;
        }
        try {
            m_accepted(fd);
        } catch (const std::system_error& failure) {
            m_report(failure.what());
            close(fd);
        }
    }
}

} // namespace sim
