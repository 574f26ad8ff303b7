#include "Injections.h"

#include <nlohmann/json.hpp>

#include "Interface.h"

namespace sim {

const char* Injection::GetName() const {
    switch (kind) {
    case Kind::Result:
        return "result";
    case Kind::Delay:
        return "delay";
    case Kind::Drop:
        return "drop";
    case Kind::Close:
        return "close";
    case Kind::Die:
        return "die";
    }
    return "";
}

void Injections::Add(const Method& method, Injection injection, unsigned calls) {
    m_orders[&method].push_back({injection, calls});
}

std::optional<Injection> Injections::Take(const Method& method) {
    if (m_orders.empty())
        return std::nullopt;
    const auto found = m_orders.find(&method);
    if (found == m_orders.end())
        return std::nullopt;
    Order& order = found->second.front();
    const Injection injection = order.injection;
    if (--order.calls == 0)
        found->second.pop_front();
    if (found->second.empty())
        m_orders.erase(found);
    return injection;
}

nlohmann::json Injections::Describe() const {
    nlohmann::json words = nlohmann::json::array();
    for (const auto& [method, orders] : m_orders) {
        for (const Order& order : orders)
            words.push_back({{"interface", method->interface->GetName()},
                             {"method", method->name},
                             {"kind", order.injection.GetName()},
                             {"number", order.injection.number},
                             {"calls", order.calls}});
    }
    return words;
}

} // namespace sim
