#include "Listener.h"

#include <cerrno>
#include <cstring>
#include <string_view>
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

// Whether the path still names the file with this identity.
bool IsSame(const std::string& path, const struct stat& identity) {
    struct stat named {};
    return lstat(path.c_str(), &named) == 0 && named.st_ino == identity.st_ino && named.st_dev == identity.st_dev;
}

// Content of a lock file, by which a file of somebody else is told from it.
constexpr std::string_view kLockContent = "lock of norvex-sim\n";

bool IsLock(int file) {
    char content[kLockContent.size() + 1];
    const ssize_t size = pread(file, content, sizeof content, 0);
    return size >= 0 && std::string_view(content, static_cast<std::size_t>(size)) == kLockContent;
}

// Makes the lock file, if there is no file of that name. It has its content from the start: a file of another name is
// linked. False with errno set on failure.
bool MakeLock(const std::string& path) {
    std::string temporary = path + ".XXXXXX";
    const int file = mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0)
        return false;
    const ssize_t written = write(file, kLockContent.data(), kLockContent.size());
    const bool made = written == static_cast<ssize_t>(kLockContent.size()) &&
                      (link(temporary.c_str(), path.c_str()) == 0 || errno == EEXIST);
    const int error = errno;
    unlink(temporary.c_str());
    close(file);
    errno = error;
    return made;
}

// Whether nobody listens at a socket's path any more: what a program that has crashed leaves.
bool IsStale(const sockaddr_un& address, int type) {
    const int probe = socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // A listener of another type refuses with EPROTOTYPE, a busy one with EAGAIN.
    const bool stale = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
                       (errno == ECONNREFUSED || errno == ENOENT);
    close(probe);
    return stale;
}

} // namespace

const std::size_t Listener::kMaxPath = sizeof(sockaddr_un::sun_path) - 1;

PathClaim::~PathClaim() {
    if (m_lock < 0)
        return;
    struct stat own {};
    if (fstat(m_lock, &own) == 0 && IsSame(m_lockPath, own))
        unlink(m_lockPath.c_str());
    close(m_lock);
}

bool PathClaim::Take(const std::string& path, std::string& error) {
    m_lockPath = path + ".lock";
    const auto refuse = [&](const std::string& what, int file = -1) {
        error = what;
        if (file >= 0)
            close(file);
        return false;
    };
    for (;;) {
        // Opening a FIFO would wait for its other end.
        const int lock = open(m_lockPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (lock < 0 && errno == ENOENT && MakeLock(m_lockPath))
            continue;
        if (lock < 0)
            return refuse(Describe(m_lockPath, std::generic_category().message(errno)));
        struct stat held {};
        if (fstat(lock, &held) != 0 || !S_ISREG(held.st_mode) || !IsLock(lock))
            return refuse(Describe(m_lockPath, "is not a lock of norvex-sim; choose another socket or remove it"),
                          lock);
        if (flock(lock, LOCK_EX | LOCK_NB) != 0)
            return refuse(errno == EWOULDBLOCK ? "another norvex-sim is running on " + path
                                               : Describe(m_lockPath, std::generic_category().message(errno)),
                          lock);
        // Its previous holder may have removed the file between open and lock.
        if (IsSame(m_lockPath, held)) {
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
    if (IsSame(m_path, m_file))
        unlink(m_path.c_str());
    close(m_socket);
}

bool Listener::Open(const std::string& path, int type, Accepted accepted, Report report, std::string& error) {
    sockaddr_un address{};
    if (path.size() > kMaxPath) {
        error = Describe(path, "too long for a socket");
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    struct stat there {};
    if (lstat(path.c_str(), &there) == 0) {
        if (!S_ISSOCK(there.st_mode)) {
            error = Describe(path, "exists and is not a socket");
            return false;
        }
        if (!IsStale(address, type)) {
            error = Describe(path, "another program is listening there");
            return false;
        }
        unlink(path.c_str());
    }
    const int fd = socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    // The mode must be set from the start.
    const mode_t mask = umask(0177);
    const bool bound = fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    umask(mask);
    if (!bound || lstat(path.c_str(), &m_file) != 0 || listen(fd, kBacklog) != 0) {
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
