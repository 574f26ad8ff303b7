#include "ScriptInput.h"

namespace host {

std::string_view TCScriptInput::Next() {
    std::unique_lock lock(m_Mutex);
    m_Line.clear();
    m_Asking = true;
    m_Changed.notify_all();
    m_Changed.wait(lock, [this] { return !m_Asking || m_Closed; });
    return m_Line;
}

void TCScriptInput::Leave() {
    const std::lock_guard lock(m_Mutex);
    m_Left = true;
    m_Changed.notify_all();
}

bool TCScriptInput::WaitUntilAsked() {
    std::unique_lock lock(m_Mutex);
    m_Changed.wait(lock, [this] { return m_Asking || m_Left; });
    return m_Asking;
}

void TCScriptInput::Give(const std::string& line) {
    const std::lock_guard lock(m_Mutex);
    m_Line = line + '\n';
    m_Asking = false;
    m_Changed.notify_all();
}

void TCScriptInput::Close() {
    const std::lock_guard lock(m_Mutex);
    m_Closed = true;
    m_Changed.notify_all();
}

} // namespace host
