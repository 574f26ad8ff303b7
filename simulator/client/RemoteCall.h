#pragma once

#include <string>
#include <type_traits>

#include <interfaces/InterfaceTable.h>
#include <norvex/core/MarshallingHelperProxy.h>

class SessionConnection;
class TIMarshalable;

// One operation of a session on its way: the status comes first, then the arguments in their order,
// each of which must live until Make.
class RemoteCall {
public:
    explicit RemoteCall(SessionConnection& session);

    template <class T> void In(const T& value) {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
        m_helper.PushValue(MARSHALLING_IN, sizeof value, const_cast<T*>(&value));
    }
    template <class T> void Out(T& value) {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
        // Any byte may come back, but a bool holds only two of them: see Flag.
        static_assert(!std::is_same_v<T, bool>);
        m_helper.PushValue(MARSHALLING_OUT, sizeof value, &value);
    }
    // Writing leaves the object as it is.
    void InObject(const TIMarshalable& object);
    void OutObject(TIMarshalable& object);

    // Makes the call. The remote status, or -1 when there was no exchange.
    template <class Method> int Make(Method method) {
        return Make(std::string(interfaces::GetMethodName(method)), static_cast<short>(method));
    }

private:
    int Make(const std::string& method, short methodId);

    SessionConnection& m_session;
    TCMarshallingHelperProxy m_helper;
    int m_status = -1;
};

// A bool that is filled from a reply: the target gets its value when the flag dies, true for any
// byte but 0.
struct Flag {
    explicit Flag(bool& flagTarget) : target(flagTarget), byte(flagTarget ? 1 : 0) {}
    ~Flag() { target = byte != 0; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

    bool& target;
    unsigned char byte;
};
