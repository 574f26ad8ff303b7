#include "Changes.h"

#include <vector>

namespace sim {

void Changes::TellAll() {
    std::vector<std::uint64_t> ids;
    ids.reserve(m_listeners.size());
    for (const auto& [id, listener] : m_listeners)
        ids.push_back(id);
    for (const std::uint64_t id : ids) {
        const auto found = m_listeners.find(id);
        if (found == m_listeners.end())
            continue;
        // A copy: the listener may remove itself.
        const Listener listener = found->second;
        listener();
    }
}

} // namespace sim
