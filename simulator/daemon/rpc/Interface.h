#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <interfaces/Interfaces.h>

#include "ArgumentReader.h"
#include "Call.h"
#include "ReplyWriter.h"

namespace sim {

class Interface;
struct Session;

// One operation of an interface.
struct Operation {
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

    Interface(const interfaces::InterfaceTable& table, Calls calls);
    virtual ~Interface() = default;
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    const std::string& GetName() const { return m_name; }
    Calls GetCalls() const { return m_calls; }
    // By number; whole once CheckComplete has passed.
    const std::vector<std::unique_ptr<Operation>>& GetOperations() const { return m_operations; }
    // std::logic_error when an operation of the table has no handler.
    void CheckComplete() const;
    // Null unless number and name belong together.
    Operation* Find(std::int16_t id, std::string_view name) const;

    // A client makes an object of this interface. 0, or below 0 to refuse. The session's `data` may
    // be set here.
    virtual std::int32_t OpenSession(Session&) { return 0; }
    // It has ended; its data goes next.
    virtual void CloseSession(Session&) {}

protected:
    // Registers the handler of one of the table's operations. std::logic_error for the second of
    // one operation.
    template <class T, class Method>
    void Add(Method method, std::initializer_list<Argument> arguments,
             void (T::*handler)(const Call&, const ArgumentReader&, ReplyWriter&)) {
        Add(static_cast<std::int16_t>(method), arguments,
            [self = static_cast<T*>(this), handler](const Call& call, const ArgumentReader& in,
                                                    ReplyWriter& out) {
                (self->*handler)(call, in, out);
            });
    }

private:
    void Add(std::int16_t id, std::vector<Argument> arguments, Operation::Handler handler);

    const interfaces::InterfaceTable& m_table;
    std::string m_name;
    Calls m_calls;
    std::vector<std::unique_ptr<Operation>> m_operations;
};

} // namespace sim
