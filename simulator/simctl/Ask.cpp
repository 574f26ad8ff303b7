#include "Ask.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <system_error>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <base/Path.h>
#include <base/Program.h>
#include <nlohmann/json.hpp>

namespace simctl {

using nlohmann::json;

namespace {

// Timeout for each line of an answer, unless the TV sends another.
constexpr double kLimitSeconds = 10;
constexpr double kMaxLimitSeconds = 1e6;
constexpr int kFailed = 1;
constexpr int kBadArguments = 2;

// The connection to a TV's control socket. Each operation that fails has reported why.
class Connection {
public:
    explicit Connection(const std::string& socketPath) : m_path(sim::GetControlPath(socketPath)) {}
    ~Connection() {
        if (m_fd >= 0)
            close(m_fd);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // 0, or the error.
    int Open() {
        sockaddr_un address{};
        if (m_path.size() >= sizeof address.sun_path)
            return ENAMETOOLONG;
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, m_path.data(), m_path.size());
        m_fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (m_fd < 0)
            return errno;
        SetLimit(kLimitSeconds);
        if (connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            return errno;
        ucred owner{};
        socklen_t size = sizeof owner;
        if (getsockopt(m_fd, SOL_SOCKET, SO_PEERCRED, &owner, &size) != 0)
            return errno;
        return owner.uid == geteuid() ? 0 : EPERM;
    }

    void Explain(int error) {
        if (error == ENOENT || error == ECONNREFUSED)
            Complain("no TV is running at " + m_path);
        else if (error == EPERM)
            Complain(m_path + ": belongs to another user");
        else
            Complain(m_path + ": " + std::generic_category().message(error));
    }

    // For each read and write; 0: none.
    void SetLimit(double seconds) {
        timeval limit{};
        limit.tv_sec = static_cast<time_t>(seconds);
        limit.tv_usec = static_cast<suseconds_t>((seconds - std::floor(seconds)) * 1e6);
        setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(m_fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    }

    // A TV that does not read it all has answered why.
    void Send(const std::string& bytes) {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t size = send(m_fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (size < 0 && errno == EINTR)
                continue;
            if (size < 0)
                return;
            sent += static_cast<std::size_t>(size);
        }
    }

    // Without the line end. False when there are no more (errno is not EAGAIN), on timeout (EAGAIN), or
    // when what has been printed cannot be written.
    bool ReadLine(std::string& line) {
        std::size_t searched = 0;
        for (;;) {
            const std::size_t end = m_received.find('\n', searched);
            if (end != std::string::npos) {
                line = m_received.substr(0, end);
                m_received.erase(0, end + 1);
                return true;
            }
            searched = m_received.size();
            // Print what has arrived before waiting for more.
            if (std::fflush(stdout) != 0)
                return false;
            char bytes[65536];
            errno = 0;
            const ssize_t size = recv(m_fd, bytes, sizeof bytes, 0);
            if (size < 0 && errno == EINTR)
                continue;
            if (size <= 0)
                return false;
            m_received.append(bytes, static_cast<std::size_t>(size));
        }
    }

private:
    std::string m_path;
    int m_fd = -1;
    std::string m_received;
};

// False when it cannot be written.
bool Print(const std::string& text) {
    static const bool kOnTerminal = isatty(STDOUT_FILENO) != 0;
    const std::string shown = kOnTerminal ? sim::EscapeControls(text) : text;
    return std::fwrite(shown.data(), 1, shown.size(), stdout) == shown.size();
}

// Prints the answer's lines; the TV's status.
int PrintAnswer(Connection& connection) {
    bool isEndless = false;
    for (std::string line; connection.ReadLine(line);) {
        const json answer = json::parse(line, nullptr, false);
        const std::string name = answer.is_object() && answer.size() == 1 ? answer.begin().key() : "";
        if (name == "print" && answer[name].is_string()) {
            if (!Print(answer[name].get<std::string>()))
                break;
        } else if (name == "error" && answer[name].is_string()) {
            Complain(answer[name].get<std::string>());
        } else if (name == "limit" && answer[name].is_number()) {
            connection.SetLimit(std::clamp(answer[name].get<double>(), 1.0, kMaxLimitSeconds));
        } else if (name == "endless") {
            isEndless = true;
            connection.SetLimit(0);
        } else if (name == "status" && answer[name].is_number_unsigned()) {
            const auto status = answer[name].get<std::uint64_t>();
            return !Flush() || status > kBadArguments ? kFailed : static_cast<int>(status);
        } else {
            Complain("malformed answer from the TV");
            return kFailed;
        }
    }
    const bool isLate = errno == EAGAIN;
    if (!Flush())
        return kFailed;
    if (isEndless)
        return 0;
    Complain(isLate ? "the TV is not responding" : "the TV ended before its answer was complete");
    return kFailed;
}

// Empty if it no longer exists.
std::string GetDirectory() {
    char directory[PATH_MAX];
    return getcwd(directory, sizeof directory) != nullptr ? directory : "";
}

} // namespace

void Complain(const std::string& line) {
    sim::Complain("norvex-simctl", line);
}

bool Flush() {
    return sim::FlushOutput("norvex-simctl");
}

int Ask(const std::string& socketPath, const std::vector<std::string>& arguments) {
    Connection connection(socketPath);
    if (const int error = connection.Open(); error != 0) {
        connection.Explain(error);
        return kFailed;
    }
    json request{{"arguments", arguments}};
    if (const std::string directory = GetDirectory(); !directory.empty())
        request["directory"] = directory;
    connection.Send(request.dump(-1, ' ', false, json::error_handler_t::replace) + "\n");
    return PrintAnswer(connection);
}

} // namespace simctl
