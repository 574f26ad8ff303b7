#include "EventSources.h"

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace sim {

void FdWatch::Start(int fd, std::uint32_t events, Handler handler) {
    Stop();
    EventLoop& loop = EventLoop::Get();
    epoll_event wanted{};
    wanted.events = events;
    wanted.data.u64 = ++loop.m_lastId;
    if (epoll_ctl(loop.m_epoll, EPOLL_CTL_ADD, fd, &wanted) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch a descriptor");
    m_fd = fd;
    m_id = wanted.data.u64;
    loop.m_watches.emplace(m_id, std::make_shared<const Handler>(std::move(handler)));
}

void FdWatch::SetEvents(std::uint32_t events) {
    if (m_fd < 0)
        return;
    epoll_event wanted{};
    wanted.events = events;
    wanted.data.u64 = m_id;
    epoll_ctl(EventLoop::Get().m_epoll, EPOLL_CTL_MOD, m_fd, &wanted);
}

void FdWatch::Stop() {
    if (m_fd < 0)
        return;
    EventLoop& loop = EventLoop::Get();
    epoll_ctl(loop.m_epoll, EPOLL_CTL_DEL, std::exchange(m_fd, -1), nullptr);
    // Removed before the handler is destroyed: what it owns may stop others.
    const auto ended = loop.m_watches.extract(m_id);
}

void Timer::Start(unsigned milliseconds, Handler handler) {
    StartAt(EventLoop::Clock::now() + std::chrono::milliseconds(milliseconds), std::move(handler));
}

void Timer::StartSoon(Handler handler) {
    // Due before all others, in the order of starting.
    StartAt(EventLoop::Clock::time_point::min(), std::move(handler));
}

void Timer::StartAt(EventLoop::Clock::time_point time, Handler handler) {
    Stop();
    EventLoop& loop = EventLoop::Get();
    m_key = {time, ++loop.m_lastId};
    loop.m_timers.emplace(m_key, std::move(handler));
}

void Timer::Stop() {
    const auto ended = EventLoop::Get().m_timers.extract(m_key);
}

bool Timer::IsRunning() const {
    return EventLoop::Get().m_timers.contains(m_key);
}

} // namespace sim
