#include "ControlConnection.h"

#include <cerrno>
#include <utility>

#include <nlohmann/json.hpp>
#include <sys/socket.h>
#include <unistd.h>

namespace sim {

using nlohmann::json;

namespace {

// What may wait to be taken before a source is asked for more.
constexpr std::size_t kEnough = 64u << 10;

} // namespace

std::string ToLine(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
}

ControlConnection::ControlConnection(int fd, RequestHandler request, EndHandler ended)
    : m_fd(fd), m_request(std::move(request)), m_ended(std::move(ended)) {
    m_watch.Start(m_fd, G_IO_IN, [this](GIOCondition conditions) { Ready(conditions); });
    m_patience.Start(kRequestMilliseconds, [this] { End(); });
}

ControlConnection::~ControlConnection() {
    if (m_fd >= 0)
        close(m_fd);
}

void ControlConnection::Ready(GIOCondition conditions) {
    if (conditions & G_IO_OUT)
        Write();
    if (m_fd >= 0 && (conditions & ~G_IO_OUT) != 0)
        Read();
}

void ControlConnection::Read() {
    char bytes[16384];
    const ssize_t size = recv(m_fd, bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (size <= 0)
        return End();
    if (m_asked)
        return; // one request a connection; the rest is heard and not listened to
    m_in.append(bytes, static_cast<std::size_t>(size));
    const std::size_t end = m_in.find('\n');
    if (end == std::string::npos) {
        if (m_in.size() > kMaxRequest)
            End();
        return;
    }
    m_asked = true;
    m_patience.Stop();
    m_in.resize(end);
    const json request = json::parse(std::exchange(m_in, {}), nullptr, false);
    if (!request.is_object())
        return Fail("the request is no JSON object");
    m_request(request, *this);
}

void ControlConnection::Answer(const json& answer) {
    m_out += ToLine(answer);
    m_last = true;
    Write();
}

void ControlConnection::Fail(const std::string& line) {
    Answer({{"error", line}});
}

void ControlConnection::SetSource(Source source) {
    m_source = std::move(source);
    Write();
}

void ControlConnection::Wake() {
    // Later: whoever wakes it is in the middle of a call.
    if (!m_wake.IsRunning())
        m_wake.StartSoon([this] { Write(); });
}

void ControlConnection::Write() {
    while (m_fd >= 0) {
        if (m_source && m_out.size() - m_written < kEnough && !m_source(m_out)) {
            m_source = nullptr;
            m_last = true;
        }
        if (m_written == m_out.size()) {
            m_out.clear();
            m_written = 0;
            m_watch.SetConditions(G_IO_IN);
            if (m_last)
                End();
            return;
        }
        const ssize_t sent = send(m_fd, m_out.data() + m_written, m_out.size() - m_written,
                                  MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && errno == EAGAIN) {
            m_out.erase(0, std::exchange(m_written, 0));
            m_watch.SetConditions(static_cast<GIOCondition>(G_IO_IN | G_IO_OUT));
            return;
        }
        if (sent < 0)
            return End();
        m_written += static_cast<std::size_t>(sent);
    }
}

void ControlConnection::End() {
    if (m_fd < 0)
        return;
    m_watch.Stop();
    m_wake.Stop();
    m_patience.Stop();
    close(std::exchange(m_fd, -1));
    m_ended(*this);
}

} // namespace sim
