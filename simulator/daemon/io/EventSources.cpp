#include "EventSources.h"

#include <new>
#include <utility>

namespace sim {

namespace {

// The handler lives in the source, so that it outlives its own call.
struct FdSource {
    GSource source;
    void* tag;
    FdWatch::Handler handler;
};

gboolean DispatchFd(GSource* source, GSourceFunc, gpointer) {
    auto* self = reinterpret_cast<FdSource*>(source);
    self->handler(g_source_query_unix_fd(source, self->tag));
    return G_SOURCE_CONTINUE;
}

void FinalizeFd(GSource* source) {
    reinterpret_cast<FdSource*>(source)->handler.~function();
}

GSourceFuncs fdFunctions = {nullptr, nullptr, DispatchFd, FinalizeFd, nullptr, nullptr};

struct Once {
    Timer::Handler handler;
    GSource** source;
};

gboolean DispatchOnce(gpointer data) {
    auto* once = static_cast<Once*>(data);
    // Ends before the handler runs, so that the handler may start it again.
    g_source_unref(std::exchange(*once->source, nullptr));
    once->handler();
    return G_SOURCE_REMOVE;
}

void FreeOnce(gpointer data) {
    delete static_cast<Once*>(data);
}

} // namespace

void FdWatch::Start(int fd, GIOCondition conditions, Handler handler) {
    Stop();
    m_source = g_source_new(&fdFunctions, sizeof(FdSource));
    auto* source = reinterpret_cast<FdSource*>(m_source);
    new (&source->handler) Handler(std::move(handler));
    m_tag = g_source_add_unix_fd(m_source, fd, conditions);
    source->tag = m_tag;
    // Nobody iterates the loop from within a handler. Keeping GLib from guarding against it saves
    // three system calls an event: each time it would take the descriptor out and put it in again.
    g_source_set_can_recurse(m_source, TRUE);
    g_source_attach(m_source, nullptr);
}

void FdWatch::SetConditions(GIOCondition conditions) {
    if (m_source != nullptr)
        g_source_modify_unix_fd(m_source, m_tag, conditions);
}

void FdWatch::Stop() {
    if (m_source == nullptr)
        return;
    g_source_destroy(m_source);
    g_source_unref(std::exchange(m_source, nullptr));
}

void Timer::Start(unsigned milliseconds, Handler handler) {
    Attach(g_timeout_source_new(milliseconds), std::move(handler));
}

void Timer::StartSoon(Handler handler) {
    // Not behind everything else: under load nothing is ever idle.
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    Attach(source, std::move(handler));
}

void Timer::Attach(GSource* source, Handler handler) {
    Stop();
    m_source = source;
    g_source_set_callback(m_source, DispatchOnce, new Once{std::move(handler), &m_source},
                          FreeOnce);
    g_source_attach(m_source, nullptr);
}

void Timer::Stop() {
    if (m_source == nullptr)
        return;
    g_source_destroy(m_source);
    g_source_unref(std::exchange(m_source, nullptr));
}

} // namespace sim
