#include "Changes.h"

#include <vector>

namespace sim {

void Changes::MarkWatches(std::string_view path) {
    bool any = false;
    const auto mark = [&any](Watched& watched) { any = watched.isMarked = true; };
    for (auto at = m_watches.lower_bound(path); at != m_watches.end() && at->first.starts_with(path); ++at) {
        if (path.empty() || at->first.size() == path.size() || at->first[path.size()] == '/')
            mark(at->second);
    }
    for (std::size_t end = path.rfind('/'); end != std::string_view::npos && end > 0; end = path.rfind('/', end - 1)) {
        if (const auto above = m_watches.find(path.substr(0, end)); above != m_watches.end())
            mark(above->second);
    }
    if (any)
        TellSoon();
}

void Changes::TellAll() {
    m_idle.Stop();
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
    std::vector<std::string> marked;
    for (const auto& [path, watched] : m_watches) {
        if (watched.isMarked)
            marked.push_back(path);
    }
    for (const std::string& path : marked) {
        const auto found = m_watches.find(path);
        if (found == m_watches.end())
            continue;
        found->second.isMarked = false;
        const Listener listener = found->second.listener;
        listener();
    }
}

} // namespace sim
