#include "SignalRegistry.h"

#include <algorithm>
#include <utility>

#include "SignalSubscriber.h"

SignalRegistry& SignalRegistry::Get() {
    static auto* registry = new SignalRegistry;
    return *registry;
}

std::shared_ptr<SignalSubscriber> SignalRegistry::Add(NorvexSignalCallbackFunction callback) {
    const std::lock_guard lock(m_mutex);
    for (const auto& [number, entry] : m_entries) {
        if (entry.callback == callback)
            return nullptr;
    }
    const unsigned number = ++m_lastNumber;
    auto subscriber = std::make_shared<SignalSubscriber>(callback, number);
    m_entries[number] = {callback, subscriber};
    return subscriber;
}

std::shared_ptr<SignalSubscriber> SignalRegistry::Remove(NorvexSignalCallbackFunction callback) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const auto& each) { return each.second.callback == callback; });
    if (found == m_entries.end())
        return nullptr;
    std::shared_ptr<SignalSubscriber> subscriber = std::move(found->second.subscriber);
    m_entries.erase(found);
    return subscriber;
}

std::shared_ptr<SignalSubscriber> SignalRegistry::Find(unsigned number) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(number);
    return found != m_entries.end() ? found->second.subscriber : nullptr;
}
