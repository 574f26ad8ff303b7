#include "OutputWatch.h"

namespace host {

void TCOutputWatch::Append(std::string_view text) {
    const std::lock_guard lock(m_Mutex);
    if (!m_Listening) {
        return;
    }
    m_Printed += text;
    if (!m_Wanted.empty() && !m_Found && Search()) {
        m_Changed.notify_one();
    }
}

void TCOutputWatch::Forget() {
    const std::lock_guard lock(m_Mutex);
    m_Printed.clear();
    m_Listening = false;
}

void TCOutputWatch::Resume() {
    const std::lock_guard lock(m_Mutex);
    m_Listening = true;
}

bool TCOutputWatch::WaitFor(std::string_view text, std::chrono::steady_clock::duration limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_Mutex);
    m_Wanted = text;
    m_Found = false;
    if (!Search()) {
        m_Changed.wait_until(lock, deadline, [this] { return m_Found || m_Ended; });
    }
    m_Wanted.clear();
    return m_Found;
}

void TCOutputWatch::End() {
    const std::lock_guard lock(m_Mutex);
    m_Ended = true;
    m_Changed.notify_one();
}

// Drops what a match can no longer begin in, so that a long wait beside a talkative thread costs no
// memory.
bool TCOutputWatch::Search() {
    const std::size_t at = m_Printed.find(m_Wanted);
    m_Found = at != std::string::npos;
    if (m_Found) {
        m_Printed.erase(0, at + m_Wanted.size());
    } else if (m_Printed.size() >= m_Wanted.size()) {
        m_Printed.erase(0, m_Printed.size() - m_Wanted.size() + 1);
    }
    return m_Found;
}

} // namespace host
