#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "FakeTree.h"

// The core debug-menu library: remote calls are answered from a script, and everything is on the
// time line:
//
//     Run(connection, com.holvi.IX, Method, 3, false; out value 4 = ffffffff; in TCClass {...})
//     _TCApiAssert(m_data, path, 72, null)
//     TCApiPrintMessage(the text as formatted)
//     TCDebugMenuUtility::OpenLibrary(path, entry)
//
// An argument's place is its order of registration. In Run, "connection" is "null" for a null one.
namespace FakeCore {

// One reply: what is written into the arguments registered as out, in their order, and what the
// exchange itself answers. Arguments without an answer are left as they were.
class Reply {
public:
    Reply();
    template <typename Value> Reply& value(Value value) {
        return add([raw = FakeTree::raw(value)](FakeBranch& root) { root.value(0, raw); });
    }
    Reply& text(const std::string& text);
    struct Item {
        std::string name;
        bool state;
        unsigned int id;
    };
    Reply& items(const std::vector<Item>& items);
    // A branch that `fill` fills.
    Reply& branch(std::function<void(FakeBranch&)> fill);
    // The next out argument has no answer.
    Reply& nothing();
    // The exchange itself fails, after the answers have been written.
    Reply& failed();

    // For the helper.
    using Fill = std::function<void(FakeBranch&)>;
    const std::vector<Fill>& answers() const;
    bool result() const;

private:
    Reply& add(Fill fill);
    std::vector<Fill> m_answers;
    bool m_result;
};

// Queues a reply for `method`; each answers one call, the last one is kept for all that follow.
// A method without a reply fails and writes nothing.
void answer(const std::string& method, const Reply& reply);
// Forgets the replies, and what follows here.
void reset();

// Words that the number test accepts beside runs of digits.
void acceptAsNumber(const std::string& word);
// What OpenLibrary answers and does; it answers true at first.
void setOpenLibrary(std::function<bool()> open);
// Called by _TCApiAssert after it has been recorded; may throw.
void onAssert(std::function<void()> handler);

// Helpers alive.
int helpersAlive();

} // namespace FakeCore
