#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include <sys/epoll.h>

namespace sim {

// The event loop of the daemon's one thread. What it calls is started by FdWatch and Timer. What a round costs depends
// on what is ready in it, not on how many descriptors are watched.
class EventLoop {
public:
    // The only one; it is never destroyed. Throws std::system_error when the kernel has none.
    static EventLoop& Get();

    // Runs rounds until Quit is called; the round in which that happens is finished first.
    void Run();
    void Quit() { m_quit = true; }

    enum class Wait { UntilReady, Never };
    // One round: calls each handler once whose descriptor is ready, then those whose timer was due when the round
    // began. A handler that starts something is not called again for it before the next round. False when there was
    // nothing to call, or a signal ended the wait.
    bool RunRound(Wait wait);

private:
    friend class FdWatch;
    friend class Timer;

    using Clock = std::chrono::steady_clock;
    // Ids count up and are never used again: what has been stopped in a round, is recognised by its id.
    using Id = std::uint64_t;
    using TimerKey = std::pair<Clock::time_point, Id>;
    using FdHandler = std::function<void(std::uint32_t events)>;

    EventLoop();

    void FindDueTimers();
    int GetTimeout() const;

    int m_epoll;
    bool m_quit = false;
    Id m_lastId = 0;
    // Shared, so that a handler outlives a call in which it is stopped.
    std::unordered_map<Id, std::shared_ptr<const FdHandler>> m_watches;
    std::map<TimerKey, std::function<void()>> m_timers;
    // Of the current round; kept for their memory.
    std::vector<epoll_event> m_ready;
    std::vector<TimerKey> m_due;
};

} // namespace sim
