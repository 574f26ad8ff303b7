#pragma once

#include <norvex/core/Export.h>

class TIMarshalable;

// Direction of an argument: filled from the reply, or sent with the call.
enum EMarshallingDirection : int { MARSHALLING_OUT = 0, MARSHALLING_IN = 1 };

// The arguments of one remote call, in the order of registration. Registered memory and objects are
// not owned and must live until the call has been made.
class NORVEX_API TCMarshallingHelper {
public:
    TCMarshallingHelper();
    virtual ~TCMarshallingHelper();
    TCMarshallingHelper(const TCMarshallingHelper&) = delete;
    TCMarshallingHelper& operator=(const TCMarshallingHelper&) = delete;

    // The next argument is a plain value of `size` bytes at `data`.
    void PushValue(EMarshallingDirection direction, int size, void* data);
    // The next argument is a marshalable object.
    void PushMarshalableClass(EMarshallingDirection direction, TIMarshalable* object);

protected:
    void* m_pState;
};
