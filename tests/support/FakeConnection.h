#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Tree.h"

// The connection to the middleware, at which the core library's remote calls arrive. On the time
// line: "NorvexAPIConnection(interface, path, true)", "~NorvexAPIConnection" and
//
//     Exchange(com.holvi.IX, Method, 3, false; out value ffffffff, in {...}, out length)
//
// with the arguments in their order of registration; "length" is an out text.
namespace FakeConnection {

// One reply: the values of the out arguments, in their order. Arguments without one are left out.
class Reply {
public:
    using WriteValue = std::function<void(Tree& tree, int tag)>;

    template <typename Number> Reply& Value(Number value) {
        return Add([value](Tree& tree, int tag) { tree.Value(tag, value); });
    }
    Reply& Text(const std::string& text);
    struct Item {
        std::string name;
        bool state;
        unsigned int id;
    };
    Reply& Items(const std::vector<Item>& items);
    // The next out argument has no value.
    Reply& Nothing();
    // The exchange fails.
    Reply& Failed();

    // For the connection.
    const std::vector<WriteValue>& GetValues() const { return m_values; }
    bool HasFailed() const { return m_failed; }

private:
    Reply& Add(WriteValue value);
    std::vector<WriteValue> m_values;
    bool m_failed = false;
};

// Queues a reply for `method`; each answers one call, the last one is kept for all that follow. The
// exchange of a method without a reply fails.
void Answer(const std::string& method, const Reply& reply);
// Forgets the replies.
void Reset();

// Number of existing connections.
int CountAlive();
// Also reports the end of a connection on standard error: "connection closed". For processes that
// are observed from outside.
void TellEnd();

} // namespace FakeConnection
