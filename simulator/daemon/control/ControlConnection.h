#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "EventSources.h"

namespace sim {

// One norvex-simctl at the control socket. It sends one request, a line:
//
//     {"arguments": ["calls", "--json"], "directory": "/where/relative/file/names/begin"}
//
// and gets lines until it gets its status, which ends the answer and the connection:
//
//     {"print": "text"}        for standard output
//     {"error": "line"}        for standard error
//     {"limit": 300}           the next line may take this many seconds
//     {"endless": true}        lines until one end closes; no status
//     {"status": 0}            0, 1: refused, 2: bad arguments
class ControlConnection {
public:
    using RequestHandler = std::function<void(const std::vector<std::string>& arguments, ControlConnection&)>;
    // Called once, when the connection has ended; the object must live until the loop's next round.
    using EndHandler = std::function<void(ControlConnection&)>;
    // Prints more; returns the status at the end.
    using Source = std::function<std::optional<int>()>;

    ControlConnection(int fd, RequestHandler request, EndHandler ended);
    ~ControlConnection();
    ControlConnection(const ControlConnection&) = delete;
    ControlConnection& operator=(const ControlConnection&) = delete;

    void Print(const std::string& text);
    void Complain(const std::string& line);
    // Sent at once, before a long operation or a wait.
    void SetLimit(double seconds);
    // The answer is complete.
    void Finish(int status = 0);
    void Fail(const std::string& line, int status = 1) {
        Complain(line);
        Finish(status);
    }

    // The source prints the rest of the answer, as fast as the client reads it.
    void SetSource(Source source);
    // The source never ends.
    void SetEndless();
    // The source has more.
    void Wake();
    // Calls the function, and keeps it until the end of the connection.
    void Start(std::function<void(ControlConnection&)> run);
    // Keeps an object until the end of the connection, such as one that waits.
    void Keep(std::shared_ptr<void> kept) { m_kept = std::move(kept); }

    // Resolves a file name given by the client.
    std::string GetPath(const std::string& file) const;

    bool HasAsked() const { return m_asked; }
    void End();

    // Time for the request.
    static constexpr unsigned kRequestMilliseconds = 2000;
    static constexpr std::size_t kMaxRequest = 1u << 20;
    static constexpr std::size_t kMaxArguments = 1000;
    // Longer error lines are truncated to this.
    static constexpr std::size_t kMaxErrorLine = 500;

private:
    void Ready(std::uint32_t events);
    void Read();
    void Request(const std::string& line);
    void Write();
    void Add(const nlohmann::json& line);

    int m_fd;
    RequestHandler m_request;
    EndHandler m_ended;
    FdWatch m_watch;
    std::string m_in;
    std::string m_out;
    std::size_t m_written = 0;
    bool m_asked = false;
    bool m_last = false; // nothing follows the content of m_out
    std::string m_directory = "/";
    std::function<void(ControlConnection&)> m_run;
    Source m_source;
    Timer m_wake;
    Timer m_patience;
    std::shared_ptr<void> m_kept;
};

} // namespace sim
