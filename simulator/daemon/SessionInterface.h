#pragma once

#include "Chassis.h"
#include "Interface.h"

namespace sim {

// com.holvi.INorvexSession: how a client makes and releases the objects of the other interfaces.
class SessionInterface : public Interface {
public:
    explicit SessionInterface(Chassis& chassis);

private:
    void Open(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Close(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    Chassis& m_chassis;
};

} // namespace sim
