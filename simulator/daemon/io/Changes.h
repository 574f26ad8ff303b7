#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "EventSources.h"

namespace sim {

// Notifies listeners that the TV may have changed: in the loop's next round, once for any number of
// changes.
class Changes {
public:
    using Listener = std::function<void()>;

    // To be called after each change; done for calls, and by Event for what happens outside calls.
    // Costs next to nothing without listeners.
    void Tell() {
        if (!m_listeners.empty())
            TellSoon();
    }
    // The values of the state at, below and above this path may have changed: "/pipelines/1:0", or
    // "" for all. Every change of a value has to be marked, or nobody who waits for it is told.
    void Mark(std::string_view path) {
        if (!m_watches.empty())
            MarkWatches(path);
    }
    // Whether marking has an effect: a path need not be built otherwise.
    bool IsWatched() const { return !m_watches.empty(); }

    // A listener is called from the loop, and may remove itself or others.
    std::uint64_t AddListener(Listener listener) {
        m_listeners.emplace(++m_lastId, std::move(listener));
        return m_lastId;
    }
    void RemoveListener(std::uint64_t id) { m_listeners.erase(id); }
    // Called from the loop after a mark at, below or above the path; one listener for each path.
    void Watch(const std::string& path, Listener listener) { m_watches[path] = {std::move(listener), false}; }
    void Unwatch(const std::string& path) { m_watches.erase(path); }

    // Notifies at once of what has been marked and told so far.
    void TellAll();

private:
    struct Watched {
        Listener listener;
        bool isMarked;
    };

    void TellSoon() {
        if (!m_idle.IsRunning())
            m_idle.StartSoon([this] { TellAll(); });
    }
    void MarkWatches(std::string_view path);

    std::map<std::uint64_t, Listener> m_listeners;
    std::map<std::string, Watched, std::less<>> m_watches;
    std::uint64_t m_lastId = 0;
    Timer m_idle;
};

} // namespace sim
