#pragma once

#include <cstdint>
#include <functional>

#include "EventLoop.h"

// Handlers of the event loop. Each ends with its object, even if destroyed in its own handler or
// another one: after a stop the handler is not called any more.
namespace sim {

// Calls the handler while a descriptor is ready. The descriptor is not owned, must outlive the
// watch, and can have only one watch at a time.
class FdWatch {
public:
    // Gets the ready events of epoll: EPOLLIN, EPOLLOUT, EPOLLERR, EPOLLHUP.
    using Handler = std::function<void(std::uint32_t events)>;

    FdWatch() = default;
    ~FdWatch() { Stop(); }
    FdWatch(const FdWatch&) = delete;
    FdWatch& operator=(const FdWatch&) = delete;

    // Throws std::system_error when the kernel cannot watch the descriptor.
    void Start(int fd, std::uint32_t events, Handler handler);
    // Events to watch for, EPOLLIN and EPOLLOUT; errors and hang-ups are always reported.
    void SetEvents(std::uint32_t events);
    void Stop();

private:
    int m_fd = -1;
    EventLoop::Id m_id = 0;
};

// Calls the handler once, after a time or in the loop's next round.
class Timer {
public:
    using Handler = std::function<void()>;

    Timer() = default;
    ~Timer() { Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    // Never early. Replaces an earlier start.
    void Start(unsigned milliseconds, Handler handler);
    void StartSoon(Handler handler);
    void Stop();
    bool IsRunning() const;

private:
    void StartAt(EventLoop::Clock::time_point time, Handler handler);

    EventLoop::TimerKey m_key;
};

} // namespace sim
