#include "ControlSocket.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <system_error>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace simctl {

using nlohmann::json;

void Complain(const std::string& line) {
    std::cerr << "norvex-simctl: " + line + "\n";
}

ControlSocket::ControlSocket(std::string socketPath) : m_path(std::move(socketPath) + ".ctl") {}

ControlSocket::~ControlSocket() {
    if (m_fd >= 0)
        close(m_fd);
}

bool ControlSocket::Connect(double seconds) {
    sockaddr_un address{};
    if (m_path.size() >= sizeof address.sun_path) {
        Complain(m_path + ": too long for a socket");
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, m_path.data(), m_path.size());
    m_fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_fd >= 0 && seconds > 0) {
        timeval limit{};
        limit.tv_sec = static_cast<time_t>(seconds);
        limit.tv_usec =
            static_cast<suseconds_t>((seconds - static_cast<double>(limit.tv_sec)) * 1e6);
        setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(m_fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    }
    if (m_fd < 0 || connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        Complain(errno == ENOENT || errno == ECONNREFUSED
                     ? "no daemon is running at " + m_path
                     : m_path + ": " + std::generic_category().message(errno));
        return false;
    }
    return true;
}

bool ControlSocket::Send(const json& request) {
    const std::string line = request.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
    std::size_t sent = 0;
    while (sent < line.size()) {
        const ssize_t size = send(m_fd, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0) {
            Complain(m_path + ": " + std::generic_category().message(errno));
            return false;
        }
        sent += static_cast<std::size_t>(size);
    }
    return true;
}

bool ControlSocket::ReadLine(std::string& line) {
    std::size_t searched = 0;
    for (;;) {
        const std::size_t end = m_received.find('\n', searched);
        if (end != std::string::npos) {
            line = m_received.substr(0, end);
            m_received.erase(0, end + 1);
            return true;
        }
        searched = m_received.size();
        char bytes[65536];
        const ssize_t size = recv(m_fd, bytes, sizeof bytes, 0);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return false;
        m_received.append(bytes, static_cast<std::size_t>(size));
    }
}

namespace {

// Tells what was wrong with the request.
bool IsRefusal(const json& answer) {
    const auto error = answer.find("error");
    if (error == answer.end())
        return false;
    Complain(error->is_string() ? error->get<std::string>() : error->dump());
    return true;
}

} // namespace

bool ControlSocket::Ask(const json& request, json& answer, double seconds) {
    if (!Connect(seconds) || !Send(request))
        return false;
    std::string line;
    if (!ReadLine(line)) {
        Complain("the daemon at " + m_path + " does not answer");
        return false;
    }
    answer = json::parse(line, nullptr, false);
    if (!answer.is_object()) {
        Complain("the answer makes no sense");
        return false;
    }
    return !IsRefusal(answer);
}

bool ControlSocket::AskForLines(const json& request, const std::function<bool(const json&)>& line) {
    if (!Connect(0) || !Send(request))
        return false;
    std::string text;
    while (ReadLine(text)) {
        const json answer = json::parse(text, nullptr, false);
        if (answer.is_object() && IsRefusal(answer))
            return false;
        try {
            if (!line(answer))
                return true;
        } catch (const json::exception&) {
            // It lacks something, or holds it in another type.
            Complain("the answer makes no sense");
            return false;
        }
    }
    return true;
}

} // namespace simctl
