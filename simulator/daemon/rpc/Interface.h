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

// An interface of the middleware: its name and its operations. An operation reads its arguments,
// changes the model and writes its out arguments without interruption on the daemon's thread; what
// takes time ends with a signal.
class Interface {
public:
    // Whether calls need a session, which a client opens first.
    enum class Calls { ToSession, ToInterface };

    Interface(const interfaces::InterfaceTable& table, Calls calls);
    virtual ~Interface() = default;
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    const std::string& GetName() const { return m_name; }
    Calls GetCalls() const { return m_calls; }
    // By number; complete once CheckComplete has passed.
    const std::vector<std::unique_ptr<Operation>>& GetOperations() const { return m_operations; }
    // std::logic_error if an operation of the table has no handler.
    void CheckComplete() const;
    // Null unless number and name belong together.
    Operation* Find(std::int16_t id, std::string_view name) const;

    // A client creates an object of this interface. Returns 0, or a value below 0 to refuse. May
    // set the session's `data`.
    virtual std::int32_t OpenSession(Session&) { return 0; }
    // The session has ended; its data is destroyed next.
    virtual void CloseSession(Session&) {}

protected:
    // Registers the handler of one of the table's operations. std::logic_error for a second handler
    // of an operation.
    template <class T, class Method>
    void Add(Method method, std::initializer_list<Argument> arguments,
             void (T::*handler)(const Call&, const ArgumentReader&, ReplyWriter&)) {
        Add(static_cast<std::int16_t>(method), arguments,
            [self = static_cast<T*>(this), handler](const Call& call, const ArgumentReader& in, ReplyWriter& out) {
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
