#pragma once

#include <functional>
#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "EventSources.h"

namespace sim {

// One norvex-simctl at the control socket: a line with a request comes in, lines with answers go
// out. {"error": "..."} is a refusal; the connection is closed after the last answer.
class ControlConnection {
public:
    using RequestHandler = std::function<void(const nlohmann::json&, ControlConnection&)>;
    // Told once, when the connection is over; it must live until the loop's next round.
    using EndHandler = std::function<void(ControlConnection&)>;
    // Adds lines to what goes out, some at a time; false when there will be no more.
    using Source = std::function<bool(std::string& lines)>;

    ControlConnection(int fd, RequestHandler request, EndHandler ended);
    ~ControlConnection();
    ControlConnection(const ControlConnection&) = delete;
    ControlConnection& operator=(const ControlConnection&) = delete;

    // The only, or last, answer.
    void Answer(const nlohmann::json& answer);
    void Fail(const std::string& line);
    // Answers come from here instead, as fast as the asker takes them.
    void SetSource(Source source);
    // The source has more.
    void Wake();
    // Lives as long as the connection: what waits for something on its behalf.
    void Keep(std::shared_ptr<void> kept) { m_kept = std::move(kept); }

    bool HasAsked() const { return m_asked; }
    void End();

    // Who has not asked by then is let go.
    static constexpr unsigned kRequestMilliseconds = 2000;
    // A request may hold a line-up.
    static constexpr std::size_t kMaxRequest = 64u << 20;

private:
    void Ready(GIOCondition conditions);
    void Read();
    void Write();

    int m_fd;
    RequestHandler m_request;
    EndHandler m_ended;
    FdWatch m_watch;
    std::string m_in;
    std::string m_out;
    std::size_t m_written = 0;
    bool m_asked = false;
    bool m_last = false; // nothing comes after what is in m_out
    Source m_source;
    Timer m_wake;
    Timer m_patience;
    std::shared_ptr<void> m_kept;
};

// JSON as it goes out: never invalid UTF-8, on one line.
std::string ToLine(const nlohmann::json& value);

} // namespace sim
