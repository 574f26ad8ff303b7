#pragma once

#include <norvex/core/Export.h>

// What the factories of NorvexAPI hand out: one client's session with a part of the middleware.
// Released through NorvexAPI::Destroy alone. Unless told otherwise an operation of a session is one
// remote call on the calling thread, answers above 0 on success and below 0 when it was refused or
// could not be made, and then leaves its out arguments as they were.
class NORVEX_API INorvexSession {
public:
    virtual ~INorvexSession();
};
