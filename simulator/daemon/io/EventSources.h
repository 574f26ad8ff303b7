#pragma once

#include <cstdint>
#include <functional>

#include <glib.h>

// Sources of GLib's default main context, which the daemon's one thread iterates. Each ends with
// its object, also from within its own handler.
namespace sim {

// Calls the handler while a descriptor is ready. The descriptor is not owned.
class FdWatch {
public:
    using Handler = std::function<void(GIOCondition)>;

    FdWatch() = default;
    ~FdWatch() { Stop(); }
    FdWatch(const FdWatch&) = delete;
    FdWatch& operator=(const FdWatch&) = delete;

    void Start(int fd, GIOCondition conditions, Handler handler);
    // What to watch for; errors and the peer's end are always told.
    void SetConditions(GIOCondition conditions);
    void Stop();

private:
    GSource* m_source = nullptr;
    void* m_tag = nullptr;
};

// Calls the handler once, after a time or in the loop's next round.
class Timer {
public:
    using Handler = std::function<void()>;

    Timer() = default;
    ~Timer() { Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    void Start(unsigned milliseconds, Handler handler);
    void StartSoon(Handler handler);
    void Stop();
    bool IsRunning() const { return m_source != nullptr; }

private:
    void Attach(GSource* source, Handler handler);

    GSource* m_source = nullptr;
};

} // namespace sim
