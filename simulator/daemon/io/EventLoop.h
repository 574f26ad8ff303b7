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

// The event loop of the daemon's one thread. Handlers are registered with FdWatch and Timer. The
// cost of a round depends on the number of ready descriptors, not of watched ones.
class EventLoop {
public:
    // The only instance; it is never destroyed. Throws std::system_error if the kernel cannot
    // create it.
    static EventLoop& Get();

    // Runs rounds until Quit is called; the current round is finished first.
    void Run();
    void Quit() { m_quit = true; }

    enum class Wait { UntilReady, Never };
    // One round: calls each handler once whose descriptor is ready, then those whose timer was due
    // when the round began. Whatever a handler starts is called in the next round at the earliest.
    // False if there was nothing to call, or a signal ended the wait.
    bool RunRound(Wait wait);

private:
    friend class FdWatch;
    friend class Timer;

    using Clock = std::chrono::steady_clock;
    // Ids are never reused: a watch or timer stopped during a round is recognised by its id.
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
    // Of the current round; kept to reuse their memory.
    std::vector<epoll_event> m_ready;
    std::vector<TimerKey> m_due;
};

} // namespace sim
