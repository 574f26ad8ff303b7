#include "ControlConnection.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "Json.h"

namespace sim {

using nlohmann::json;

namespace {

// Maximum of unsent bytes before a source is asked for more.
constexpr std::size_t kEnough = 64u << 10;
constexpr int kBadRequest = 2;

// Texts that a command line can have.
bool IsListOfTexts(const json& value) {
    return value.is_array() && std::all_of(value.begin(), value.end(), [](const json& each) {
               return each.is_string() && each.get_ref<const std::string&>().find('\0') == std::string::npos;
           });
}

} // namespace

ControlConnection::ControlConnection(int fd, RequestHandler request, EndHandler ended)
    : m_fd(fd), m_request(std::move(request)), m_ended(std::move(ended)) {
    m_watch.Start(m_fd, EPOLLIN, [this](std::uint32_t events) { Ready(events); });
    m_patience.Start(kRequestMilliseconds, [this] { End(); });
}

ControlConnection::~ControlConnection() {
    if (m_fd >= 0)
        close(m_fd);
}

void ControlConnection::Ready(std::uint32_t events) {
    if (events & EPOLLOUT)
        Write();
    if (m_fd >= 0 && (events & ~std::uint32_t{EPOLLOUT}) != 0)
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
        return; // one request per connection; the rest is ignored
    m_in.append(bytes, static_cast<std::size_t>(size));
    const std::size_t end = m_in.find('\n', m_in.size() - static_cast<std::size_t>(size));
    if (end == std::string::npos && m_in.size() <= kMaxRequest)
        return;
    m_asked = true;
    if (m_in.size() > kMaxRequest) {
        m_in = {};
        // The time for the request goes on: see Write.
        return Fail("malformed request: longer than 1 MiB", kBadRequest);
    }
    m_patience.Stop();
    m_in.resize(end);
    Request(std::exchange(m_in, {}));
}

void ControlConnection::Request(const std::string& line) {
    json request;
    if (!ParseJson(line, request) || !request.is_object())
        return Fail("malformed request: expected a JSON object on one line", kBadRequest);
    std::vector<std::string> arguments;
    for (const auto& [name, value] : request.items()) {
        if (name == "arguments" && IsListOfTexts(value) && value.size() <= kMaxArguments)
            arguments = value.get<std::vector<std::string>>();
        else if (name == "directory" && value.is_string() && value.get_ref<const std::string&>().starts_with('/'))
            m_directory = value.get<std::string>();
        else
            return Fail("malformed request: \"" + name + "\"", kBadRequest);
    }
    m_request(arguments, *this);
}

void ControlConnection::Add(const json& line) {
    m_out += ToText(line) + '\n';
}

void ControlConnection::Print(const std::string& text) {
    Add({{"print", text}});
}

void ControlConnection::Complain(const std::string& line) {
    Add({{"error", line.size() > kMaxErrorLine ? line.substr(0, kMaxErrorLine) + "..." : line}});
}

void ControlConnection::SetLimit(double seconds) {
    Add({{"limit", seconds}});
    Write();
}

void ControlConnection::Finish(int status) {
    Add({{"status", status}});
    m_last = true;
    Write();
}

void ControlConnection::SetEndless() {
    Add({{"endless", true}});
}

void ControlConnection::Start(std::function<void(ControlConnection&)> run) {
    m_run = std::move(run);
    m_run(*this);
}

std::string ControlConnection::GetPath(const std::string& file) const {
    return file.starts_with('/') ? file : m_directory + "/" + file;
}

void ControlConnection::SetSource(Source source) {
    m_source = std::move(source);
    Write();
}

void ControlConnection::Wake() {
    // Later: Wake is called in the middle of a call.
    if (!m_wake.IsRunning())
        m_wake.StartSoon([this] { Write(); });
}

void ControlConnection::Write() {
    while (m_fd >= 0) {
        if (m_source && m_out.size() - m_written < kEnough) {
            if (const std::optional<int> status = m_source()) {
                Add({{"status", *status}});
                m_source = nullptr;
                m_last = true;
            }
        }
        if (m_written == m_out.size()) {
            m_out.clear();
            m_written = 0;
            m_watch.SetEvents(EPOLLIN);
            // Whoever is still sending the request gets the answer, not an error of the socket.
            if (m_last && m_patience.IsRunning())
                shutdown(m_fd, SHUT_WR);
            else if (m_last)
                End();
            return;
        }
        const ssize_t sent =
            send(m_fd, m_out.data() + m_written, m_out.size() - m_written, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && errno == EAGAIN) {
            m_out.erase(0, std::exchange(m_written, 0));
            m_watch.SetEvents(EPOLLIN | EPOLLOUT);
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
