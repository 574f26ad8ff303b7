#pragma once

#include <norvex/core/Export.h>

// What the factories of NorvexAPI create: one client's session with a part of the middleware.
// Released only through NorvexAPI::Destroy. Unless stated otherwise, an operation of a session is
// one remote call on the calling thread. It returns a number above 0 on success, and below 0 when
// the call was refused or failed; its out arguments are then unchanged.
class NORVEX_API INorvexSession {
public:
    virtual ~INorvexSession();
};
