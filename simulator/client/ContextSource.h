#pragma once

#include <memory>

#include <glib.h>

// Keeps a source attached to GLib's default main context. The destructor does not wait for a
// callback that is running on the iterating thread.
class ContextSource {
public:
    ContextSource() = default;
    // Takes ownership of a new source with its callback.
    explicit ContextSource(GSource* source) : m_source(source) { g_source_attach(source, nullptr); }

    explicit operator bool() const { return m_source != nullptr; }
    void Reset() { m_source.reset(); }
    // Whether this source's callback is running on the calling thread.
    bool IsCurrent() const { return m_source.get() == g_main_current_source(); }

private:
    struct Removal {
        void operator()(GSource* source) const {
            g_source_destroy(source);
            g_source_unref(source);
        }
    };

    std::unique_ptr<GSource, Removal> m_source;
};
