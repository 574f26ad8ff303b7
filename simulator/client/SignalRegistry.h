#pragma once

#include <map>
#include <memory>
#include <mutex>

#include <norvex/client/Signal.h>

class SignalSubscriber;

// The registered callbacks with their subscribers, each of which has a number. Any thread.
class SignalRegistry {
public:
    // Never destroyed.
    static SignalRegistry& Get();

    // A new subscriber for the callback; null when it has one already.
    std::shared_ptr<SignalSubscriber> Add(NorvexSignalCallbackFunction callback);
    // Takes the callback's subscriber out; null when it has none.
    std::shared_ptr<SignalSubscriber> Remove(NorvexSignalCallbackFunction callback);
    // Null when it has been taken out.
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
