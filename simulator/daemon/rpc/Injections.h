#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace sim {

struct Operation;

// A failure of the next calls of an operation.
struct Injection {
    enum class Kind {
        Result, // the operation is not executed; the reply has only this result
        Delay,  // it is executed, the reply is delayed by this many milliseconds
        Drop,   // it is executed, the reply is not sent
        Close,  // it is not executed, the connection is closed
        Die,    // it is not executed, the daemon ends at once
    };
    Kind kind = Kind::Result;
    std::int32_t number = 0; // the result, or milliseconds
    std::string text = {};   // if not empty: only for calls that have it among their arguments

    const char* GetName() const;
};

// The pending failures, by operation; used up in the order given.
class Injections {
public:
    void Add(const Operation& method, Injection injection, unsigned calls);
    // Whether a text is among a call's arguments.
    using HasText = std::function<bool(std::string_view text)>;
    // The failure for this call, if any; counts it.
    std::optional<Injection> Take(const Operation& method, const HasText& hasText);
    bool IsEmpty() const { return m_orders.empty(); }
    void Clear() { m_orders.clear(); }
    std::size_t GetCount() const;

    // Remaining failures, by operation.
    nlohmann::json Describe() const;

private:
    struct Order {
        Injection injection;
        unsigned calls;
    };
    std::map<const Operation*, std::deque<Order>> m_orders;
};

} // namespace sim
