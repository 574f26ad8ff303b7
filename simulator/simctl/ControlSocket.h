#pragma once

#include <functional>
#include <string>

#include <nlohmann/json.hpp>

namespace simctl {

// The client's end of a daemon's control socket: one request, its answers. Failures are told on
// standard error, in one line.
class ControlSocket {
public:
    explicit ControlSocket(std::string socketPath);
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    // One answer, within `seconds`. False: it was told why not, the program's status is 1.
    bool Ask(const nlohmann::json& request, nlohmann::json& answer, double seconds = 10);
    // Calls `line` for each answer until there are no more; it returns false to stop.
    bool AskForLines(const nlohmann::json& request,
                     const std::function<bool(const nlohmann::json&)>& line);

private:
    bool Connect(double seconds);
    bool Send(const nlohmann::json& request);
    // False at the end, and when nothing came in time.
    bool ReadLine(std::string& line);

    std::string m_path;
    int m_fd = -1;
    std::string m_received;
};

// Writes "norvex-simctl: ..." to standard error.
void Complain(const std::string& line);

} // namespace simctl
