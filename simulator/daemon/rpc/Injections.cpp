#include "Injections.h"

#include <algorithm>
#include <utility>

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

void Injections::Add(const Operation& method, Injection injection, unsigned calls) {
    m_orders[&method].push_back({std::move(injection), calls});
}

std::optional<Injection> Injections::Take(const Operation& method, const HasText& hasText) {
    if (m_orders.empty())
        return std::nullopt;
    const auto found = m_orders.find(&method);
    if (found == m_orders.end())
        return std::nullopt;
    const auto order = std::find_if(found->second.begin(), found->second.end(), [&](const Order& each) {
        return each.injection.text.empty() || hasText(each.injection.text);
    });
    if (order == found->second.end())
        return std::nullopt;
    const Injection injection = order->injection;
    if (--order->calls == 0)
        found->second.erase(order);
    if (found->second.empty())
        m_orders.erase(found);
    return injection;
}

std::size_t Injections::GetCount() const {
    std::size_t count = 0;
    for (const auto& [method, orders] : m_orders)
        count += orders.size();
    return count;
}

nlohmann::json Injections::Describe() const {
    nlohmann::json described = nlohmann::json::array();
    for (const auto& [method, orders] : m_orders) {
        for (const Order& order : orders)
            described.push_back({{"interface", method->interface->GetName()},
                                 {"method", method->name},
                                 {"kind", order.injection.GetName()},
                                 {"number", order.injection.number},
                                 {"with", order.injection.text},
                                 {"calls", order.calls}});
    }
    return described;
}

} // namespace sim
