#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <norvex/client/SignalSubscriber.h>

#include "ContextSource.h"
#include "DaemonConnection.h"
#include "SessionConnection.h"

// A registered callback: a session in which signals are subscribed by calls, and a connection of
// its own on which they come, watched by GLib's default main context. What a restart of the daemon
// takes away is restored by a timer of the same context.
//
// Subscribing may happen on any thread, delivering on the one that iterates the context. GLib is
// only given a number to find the subscriber by (see SignalRegistry): everything else is handed
// over under the locks here.
class SignalSubscriber final : public ISignalSubscriber {
public:
    // `number` is the registry's.
    SignalSubscriber(NorvexSignalCallbackFunction callback, unsigned number);
    ~SignalSubscriber() override;

    // Opens the session and the signals' connection, or leaves that to the timer. 0, or below 0
    // when a running daemon refuses.
    int Start();
    // Ends both. Waits for a call of the callback that is under way on another thread; none comes
    // afterwards. Called once.
    void End();

    int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) override;
    int Unsubscribe(ESignalType type, int filter, int profile, int screen) override;

    // On the iterating thread. False: the source that called is of no more use.
    bool Deliver();
    bool Restore();

private:
    struct Subscription {
        ESignalType type;
        int mode;
        int filter;
        int profile;
        int screen;
    };

    int CallSubscribe(const Subscription& subscription);
    bool CatchUp();
    bool Resubscribe();
    bool IsWatching();
    void Watch(std::unique_ptr<DaemonConnection> connection);
    void StartTimer();

    const NorvexSignalCallbackFunction m_callback;
    const unsigned m_number;
    std::atomic<bool> m_hasEnded{false};

    // Held during calls to the daemon, so never while the callback runs.
    std::mutex m_callMutex;
    std::unique_ptr<SessionConnection> m_session;
    const std::shared_ptr<DaemonClient> m_daemon;
    // One each time that it was subscribed, oldest first.
    std::vector<Subscription> m_subscriptions;
    // The session's generation (see DaemonClient) for which they stand in the daemon, and for which
    // the signals' connection was opened.
    std::uint64_t m_subscribedUnder = 0;
    std::uint64_t m_watchedUnder = 0;

    // Guards what follows; taken inside of m_callMutex where both are needed, held briefly.
    std::mutex m_deliveryMutex;
    std::condition_variable m_delivered;
    std::unique_ptr<DaemonConnection> m_connection;
    ContextSource m_watch;
    ContextSource m_timer;
    std::thread::id m_deliveringThread; // none: no call of the callback is under way
};
