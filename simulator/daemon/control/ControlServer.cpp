#include "ControlServer.h"

#include <algorithm>

#include <sys/socket.h>
#include <unistd.h>

#include <base/Printed.h>

namespace sim {

ControlServer::ControlServer(const ControlCommands& commands, Log& log) : m_commands(commands), m_log(log) {}

bool ControlServer::Open(const std::string& path, std::string& error) {
    return m_listener.Open(
        path, SOCK_STREAM, [this](int fd) { Accept(fd); },
        [this](const std::string& line) { m_log.Write(kOwnTag, "%s", line.c_str()); }, error);
}

void ControlServer::Accept(int fd) {
    const auto isSilent = [](const auto& each) { return !each->HasAsked(); };
    const auto silent = std::count_if(m_connections.begin(), m_connections.end(), isSilent);
    if (static_cast<std::size_t>(silent) >= kMaxWithoutRequest ||
        (silent > 0 && m_connections.size() >= kMaxConnections))
        // The oldest is evicted.
        (*std::find_if(m_connections.begin(), m_connections.end(), isSilent))->End();
    if (m_connections.size() >= kMaxConnections) {
        m_log.Write(kOwnTag, "refused a control connection: %zu are open", m_connections.size());
        const std::string answer =
            Printed("{\"error\":\"%zu control connections are open: one of them must end first\"}\n{\"status\":1}\n",
                    m_connections.size());
        send(fd, answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        close(fd);
        return;
    }
    m_connections.push_back(std::make_unique<ControlConnection>(
        fd, [this](const auto& arguments, auto& connection) { m_commands.Execute(arguments, connection); },
        [this](auto& connection) { Ended(connection); }));
}

void ControlServer::Ended(ControlConnection& connection) {
    const auto found = std::find_if(m_connections.begin(), m_connections.end(),
                                    [&](const auto& candidate) { return candidate.get() == &connection; });
    m_ended.push_back(std::move(*found));
    m_connections.erase(found);
    m_cleanUp.StartSoon([this] { m_ended.clear(); });
}

} // namespace sim
