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
        Result, // the operation does not happen; the reply holds this result alone
        Delay,  // it happens, the reply comes late by so many milliseconds
        Drop,   // it happens, the reply never comes
        Close,  // it does not happen, the connection is closed
        Die,    // it does not happen, the daemon ends on the spot
    };
    Kind kind = Kind::Result;
    std::int32_t number = 0; // the result, or milliseconds
    std::string text = {};   // empty, or only for calls that have it among their arguments

    const char* GetName() const;
};

// The failures to come, by operation; used up in the order in which they were given.
class Injections {
public:
    void Add(const Operation& method, Injection injection, unsigned calls);
    // Whether a text is among a call's arguments.
    using HasText = std::function<bool(std::string_view text)>;
    // What is to be done to this call; counts it.
    std::optional<Injection> Take(const Operation& method, const HasText& hasText);
    bool IsEmpty() const { return m_orders.empty(); }
    void Clear() { m_orders.clear(); }

    // Calls still to come, by operation.
    nlohmann::json Describe() const;

private:
    struct Order {
        Injection injection;
        unsigned calls;
    };
    std::map<const Operation*, std::deque<Order>> m_orders;
};

} // namespace sim
