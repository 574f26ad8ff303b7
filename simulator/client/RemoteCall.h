#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <interfaces/InterfaceTable.h>
#include <norvex/core/MarshallingHelperProxy.h>

#include "MarshalableValue.h"

class SessionConnection;

// One call of a session's operation: first the status, then the arguments in order, each of which
// must live until Make.
class RemoteCall {
public:
    explicit RemoteCall(SessionConnection& session);

    // A number, one of the client library's objects, or a value (values/Layout.h). Writing leaves it
    // as it is.
    template <class T> void In(const T& value) { Push(MARSHALLING_IN, const_cast<T&>(value)); }
    template <class T> void Out(T& value) {
        // A reply may contain any byte, but a bool has only two values: see Flag.
        static_assert(!std::is_same_v<T, bool>);
        Push(MARSHALLING_OUT, value);
    }

    // Makes the call. Returns the remote status, or -1 if the exchange failed.
    template <class Method> int Make(Method method) {
        return Make(std::string(interfaces::GetMethodName(method)), static_cast<short>(method));
    }

private:
    template <class T> void Push(EMarshallingDirection direction, T& value) {
        if constexpr (values::Scalar<T>) {
            m_helper.PushValue(direction, sizeof value, &value);
        } else if constexpr (std::is_base_of_v<TIMarshalable, T>) {
            m_helper.PushMarshalableClass(direction, &value);
        } else {
            m_values.push_back(std::make_unique<MarshalableValue<T>>(value));
            m_helper.PushMarshalableClass(direction, m_values.back().get());
        }
    }
    int Make(const std::string& method, short methodId);

    SessionConnection& m_session;
    TCMarshallingHelperProxy m_helper;
    std::vector<std::unique_ptr<TIMarshalable>> m_values;
    int m_status = -1;
};

// A bool filled from a reply: the destructor sets the target, to true for any byte except 0.
struct Flag {
    explicit Flag(bool& flagTarget) : target(flagTarget), byte(flagTarget ? 1 : 0) {}
    ~Flag() { target = byte != 0; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

    bool& target;
    unsigned char byte;
};
