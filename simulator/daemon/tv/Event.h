#pragma once

#include "Context.h"

namespace sim {

// Something that happens to the TV outside a call: while it lives, log lines have a number of its own, and at its end
// whoever waits for a change is notified.
class Event {
public:
    explicit Event(Context& context) : m_context(context) {
        m_context.log.SetSequence(m_context.journal.TakeSequence());
    }
    ~Event() {
        m_context.log.SetSequence(0);
        m_context.changes.Tell();
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

private:
    Context& m_context;
};

} // namespace sim
