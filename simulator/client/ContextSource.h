#pragma once

#include <glib.h>
#include <memory>

// A source that is attached to GLib's default main context until this dies. Its callback may still
// be running on the iterating thread by then: whoever needs to know waits for it by other means.
class ContextSource {
public:
    ContextSource() = default;
    // Takes over a new source, complete with its callback.
    explicit ContextSource(GSource* source) : m_source(source) { g_source_attach(source, nullptr); }

    explicit operator bool() const { return m_source != nullptr; }
    void Reset() { m_source.reset(); }
    // Whether it is this source's callback that runs on the calling thread.
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
