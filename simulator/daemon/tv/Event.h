#pragma once

#include "Context.h"

namespace sim {

// Something that happens to the TV outside a call: during its lifetime log lines have its own
// number, and its end notifies those that wait for a change.
class Event {
public:
    explicit Event(Context& context) : m_context(context) {
        m_context.log.SetSequence(m_context.journal.TakeSequence());
    }
    ~Event() {
        m_context.log.SetSequence(0);
        m_context.changes.Mark("/daemon/sequence");
        m_context.changes.Mark("/clock");
        m_context.changes.Tell();
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

private:
    Context& m_context;
};

} // namespace sim
