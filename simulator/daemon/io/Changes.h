#pragma once

#include <cstdint>
#include <functional>
#include <map>

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
        if (!m_listeners.empty() && !m_idle.IsRunning())
            m_idle.StartSoon([this] { TellAll(); });
    }

    // A listener is called from the loop, and may remove itself or others.
    std::uint64_t AddListener(Listener listener) {
        m_listeners.emplace(++m_lastId, std::move(listener));
        return m_lastId;
    }
    void RemoveListener(std::uint64_t id) { m_listeners.erase(id); }

private:
    void TellAll();

    std::map<std::uint64_t, Listener> m_listeners;
    std::uint64_t m_lastId = 0;
    Timer m_idle;
};

} // namespace sim
