#include "ScriptRun.h"

#include <csignal>
#include <utility>

namespace host {

void OutputWatch::Append(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    if (!m_listening) {
        return;
    }
    m_printed += text;
    if (!m_wanted.empty() && !m_found && Search()) {
        m_changed.notify_one();
    }
}

void OutputWatch::Forget() {
    const std::lock_guard lock(m_mutex);
    m_printed.clear();
    m_listening = false;
}

void OutputWatch::Resume() {
    const std::lock_guard lock(m_mutex);
    m_listening = true;
}

bool OutputWatch::WaitFor(std::string_view text, std::chrono::steady_clock::duration limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_mutex);
    m_wanted = text;
    m_found = false;
    if (!Search()) {
        m_changed.wait_until(lock, deadline, [this] { return m_found || m_ended; });
    }
    m_wanted.clear();
    return m_found;
}

void OutputWatch::End() {
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_one();
}

// Drops what a match can no longer begin in, so that a long wait with much output needs no memory.
bool OutputWatch::Search() {
    const std::size_t at = m_printed.find(m_wanted);
    m_found = at != std::string::npos;
    if (m_found) {
        m_printed.erase(0, at + m_wanted.size());
    } else if (m_printed.size() >= m_wanted.size()) {
        m_printed.erase(0, m_printed.size() - m_wanted.size() + 1);
    }
    return m_found;
}

std::string_view ScriptInput::Next() {
    std::unique_lock lock(m_mutex);
    m_line.clear();
    m_asking = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return !m_asking || m_closed; });
    return m_line;
}

void ScriptInput::Leave() {
    const std::lock_guard lock(m_mutex);
    m_left = true;
    m_changed.notify_all();
}

bool ScriptInput::WaitUntilAsked() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_asking || m_left; });
    return m_asking;
}

void ScriptInput::Give(const std::string& line) {
    const std::lock_guard lock(m_mutex);
    m_line = line + '\n';
    m_asking = false;
    m_changed.notify_all();
}

void ScriptInput::Close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

ScriptRun::ScriptRun(std::vector<Step> steps, ScriptInput& input, OutputWatch& watch,
                     std::function<void(const Step&, const ExpectStep&)> missed)
    : m_steps(std::move(steps)), m_input(input), m_watch(watch), m_missed(std::move(missed)) {}

ScriptRun::~ScriptRun() {
    Finish();
}

void ScriptRun::Start() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread([this] { Run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void ScriptRun::Finish() {
    if (m_thread.joinable()) {
        m_watch.End();
        m_input.Leave();
        m_thread.join();
    }
}

void ScriptRun::Run() {
    for (const Step& step : m_steps) {
        if (const auto* type = std::get_if<TypeStep>(&step.action)) {
            Type(*type);
        } else {
            const auto& expect = std::get<ExpectStep>(step.action);
            if (!m_watch.WaitFor(expect.text, expect.limit)) {
                m_missed(step, expect);
                break;
            }
        }
    }
    m_watch.Forget();
    m_input.Close();
}

void ScriptRun::Type(const TypeStep& step) {
    m_watch.Forget();
    const bool asked = m_input.WaitUntilAsked();
    m_watch.Resume();
    if (asked) {
        m_input.Give(step.line);
    }
}

} // namespace host
