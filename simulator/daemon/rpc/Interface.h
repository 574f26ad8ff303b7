#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ArgumentReader.h"
#include "Call.h"
#include "ReplyWriter.h"

namespace sim {

class Interface;
struct Session;

// One operation of an interface.
struct Method {
    using Handler = std::function<void(const Call&, const ArgumentReader&, ReplyWriter&)>;

    const Interface* interface;
    std::string name;
    std::int16_t id;
    std::vector<Argument> arguments;
    Handler handler;
    std::uint64_t calls = 0; // since the start or the last reset
};

// An interface of the middleware as clients call it: its name and its operations. An operation
// reads its arguments, changes the model and writes its out arguments, in one go on the daemon's
// thread; what takes time ends in a signal.
class Interface {
public:
    // Whether calls go to a session, which a client opens first, or to the interface itself.
    enum class Calls { ToSession, ToInterface };

    Interface(std::string name, Calls calls) : m_name(std::move(name)), m_calls(calls) {}
    virtual ~Interface() = default;
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    const std::string& GetName() const { return m_name; }
    Calls GetCalls() const { return m_calls; }
    const std::vector<std::unique_ptr<Method>>& GetMethods() const { return m_methods; }
    // Null unless number and name belong together.
    Method* Find(std::int16_t id, std::string_view name) const;

    // A client makes an object of this interface. 0, or below 0 to refuse. The session's `data` may
    // be set here.
    virtual std::int32_t OpenSession(Session&) { return 0; }
    // It has ended; its data goes next.
    virtual void CloseSession(Session&) {}

protected:
    // Adds the next operation. Its number is its place: operations are added in the order in which
    // the client's side lists them, and new ones at the end.
    template <class T>
    void Add(const char* name, std::initializer_list<Argument> arguments,
             void (T::*handler)(const Call&, const ArgumentReader&, ReplyWriter&)) {
        Add(name, arguments,
            [self = static_cast<T*>(this), handler](const Call& call, const ArgumentReader& in,
                                                    ReplyWriter& out) {
                (self->*handler)(call, in, out);
            });
    }

private:
    void Add(const char* name, std::vector<Argument> arguments, Method::Handler handler);

    std::string m_name;
    Calls m_calls;
    std::vector<std::unique_ptr<Method>> m_methods;
};

} // namespace sim
