#include "EventLoop.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

namespace sim {

EventLoop& EventLoop::Get() {
    static auto* loop = new EventLoop;
    return *loop;
}

EventLoop::EventLoop() : m_epoll(epoll_create1(EPOLL_CLOEXEC)) {
    if (m_epoll < 0)
        throw std::system_error(errno, std::generic_category(), "epoll_create1");
}

void EventLoop::Run() {
    while (!m_quit)
        RunRound(Wait::UntilReady);
    m_quit = false;
}

bool EventLoop::RunRound(Wait wait) {
    // Room for all: no handler is called twice while another one is ready and has not been called.
    m_ready.resize(m_watches.size() + 1);
    const int count =
        epoll_wait(m_epoll, m_ready.data(), static_cast<int>(m_ready.size()), wait == Wait::Never ? 0 : GetTimeout());
    FindDueTimers();
    bool called = false;
    for (int i = 0; i < count; ++i) {
        const epoll_event& event = m_ready[static_cast<std::size_t>(i)];
        const auto watch = m_watches.find(event.data.u64);
        if (watch == m_watches.end())
            continue; // stopped in this round
        const std::shared_ptr<const FdHandler> handler = watch->second;
        called = true;
        (*handler)(event.events);
    }
    for (const TimerKey& key : m_due) {
        // Removed first: the handler may start its timer again.
        const auto timer = m_timers.extract(key);
        if (timer.empty())
            continue; // stopped in this round
        called = true;
        timer.mapped()();
    }
    return called;
}

void EventLoop::FindDueTimers() {
    m_due.clear();
    if (m_timers.empty())
        return;
    const Clock::time_point now = Clock::now();
    for (auto timer = m_timers.begin(); timer != m_timers.end() && timer->first.first <= now; ++timer)
        m_due.push_back(timer->first);
}

// Milliseconds until the next timer is due, as epoll_wait wants them; rounded up, since a timer is never early.
int EventLoop::GetTimeout() const {
    if (m_timers.empty())
        return -1;
    const Clock::time_point next = m_timers.begin()->first.first;
    const Clock::time_point now = Clock::now();
    if (next <= now)
        return 0;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - now).count();
    return static_cast<int>(std::min<decltype(left)>(left, INT_MAX));
}

} // namespace sim
