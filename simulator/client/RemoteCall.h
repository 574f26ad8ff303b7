#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <interfaces/InterfaceTable.h>
#include <norvex/core/MarshallingHelperProxy.h>

#include "MarshalableValue.h"

class SessionConnection;

// One call of a session's operation: the status comes first, then the arguments in their order.
//
//     return RemoteCall(session, Method::SetZoomWindow).In(windowIds).In(on).Make();
//
// Each argument must live until the call's end, which is when a bool gets its value.
class RemoteCall {
public:
    template <class Method>
    RemoteCall(SessionConnection& session, Method method)
        : RemoteCall(session, interfaces::GetMethodName(method), static_cast<short>(method)) {}

    // A number, one of the client library's objects, or a value (values/Layout.h). Writing does not
    // change it.
    template <class T> RemoteCall& In(const T& value) { return Push(MARSHALLING_IN, const_cast<T&>(value)); }
    template <class T> RemoteCall& Out(T& value) { return Push(MARSHALLING_OUT, value); }
    RemoteCall& Out(bool& value) { return Out(m_flags.emplace_back(value).byte); }

    // Makes the call. The remote status, or -1 when there was no exchange.
    int Make();

private:
    // Any byte may come back, but a bool holds only two of them: true for any byte but 0.
    struct Flag {
        explicit Flag(bool& flagTarget) : target(flagTarget), byte(flagTarget ? 1 : 0) {}
        ~Flag() { target = byte != 0; }
        Flag(const Flag&) = delete;
        Flag& operator=(const Flag&) = delete;

        bool& target;
        unsigned char byte;
    };

    RemoteCall(SessionConnection& session, std::string_view method, short methodId);

    template <class T> RemoteCall& Push(EMarshallingDirection direction, T& value) {
        if constexpr (values::Scalar<T>) {
            m_helper.PushValue(direction, sizeof value, &value);
        } else if constexpr (std::is_base_of_v<TIMarshalable, T>) {
            m_helper.PushMarshalableClass(direction, &value);
        } else {
            m_values.push_back(std::make_unique<MarshalableValue<T>>(value));
            m_helper.PushMarshalableClass(direction, m_values.back().get());
        }
        return *this;
    }

    SessionConnection& m_session;
    std::string m_method;
    short m_methodId;
    TCMarshallingHelperProxy m_helper;
    std::vector<std::unique_ptr<TIMarshalable>> m_values;
    std::list<Flag> m_flags;
    int m_status = -1;
};
