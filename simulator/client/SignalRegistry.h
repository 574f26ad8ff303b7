#pragma once

#include <map>
#include <memory>
#include <mutex>

#include <norvex/client/Signal.h>

class SignalSubscriber;

// The registered callbacks with their numbered subscribers. Any thread.
class SignalRegistry {
public:
    // Never destroyed.
    static SignalRegistry& Get();

    // Creates a subscriber for the callback; null if it has one already.
    std::shared_ptr<SignalSubscriber> Add(NorvexSignalCallbackFunction callback);
    // Removes the callback's subscriber; null if it has none.
    std::shared_ptr<SignalSubscriber> Remove(NorvexSignalCallbackFunction callback);
    // Null if it has been removed.
    std::shared_ptr<SignalSubscriber> Find(unsigned number);

private:
    SignalRegistry() = default;

    struct Entry {
        NorvexSignalCallbackFunction callback;
        std::shared_ptr<SignalSubscriber> subscriber;
    };

    std::mutex m_mutex;
    std::map<unsigned, Entry> m_entries;
    unsigned m_lastNumber = 0;
};
