#pragma once

#include <base/Log.h>

#include "Dispatcher.h"
#include "Interface.h"
#include "Sessions.h"

namespace sim {

// INorvexSession: creates and releases the objects of the other interfaces.
class SessionInterface : public Interface {
public:
    SessionInterface(const Dispatcher& dispatcher, Sessions& sessions, Log& log);

private:
    void Open(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Close(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    const Dispatcher& m_dispatcher;
    Sessions& m_sessions;
    Log& m_log;
};

} // namespace sim
