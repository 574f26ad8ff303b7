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

// A registered callback: a session for subscribing to signals, and a separate connection on which
// they arrive, watched by GLib's default main context. After a restart of the daemon, a timer of
// the same context restores both.
//
// Subscribe on any thread; signals are delivered on the thread that iterates the context. GLib only
// gets the subscriber's number (see SignalRegistry); the locks here protect everything else.
class SignalSubscriber final : public ISignalSubscriber {
public:
    // `number` is the registry's.
    SignalSubscriber(NorvexSignalCallbackFunction callback, unsigned number);
    ~SignalSubscriber() override;

    // Opens the session and the signal connection, or leaves that to the timer. Returns 0, or a
    // value below 0 if a running daemon refuses.
    int Start();
    // Closes both. Waits for a callback that is running on another thread; there are no callbacks
    // afterwards. Called once.
    void End();

    int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) override;
    int Unsubscribe(ESignalType type, int filter, int profile, int screen) override;

    // On the iterating thread. False: the calling source is no longer needed.
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

    // Held during calls of the daemon, so never while the callback runs.
    std::mutex m_callMutex;
    std::unique_ptr<SessionConnection> m_session;
    const std::shared_ptr<DaemonClient> m_daemon;
    // One entry per subscription, oldest first.
    std::vector<Subscription> m_subscriptions;
    // The session's generation (see DaemonClient) in which the daemon has them, and that of the
    // signal connection.
    std::uint64_t m_subscribedUnder = 0;
    std::uint64_t m_watchedUnder = 0;

    // Guards the following members; locked after m_callMutex if both are needed; held briefly.
    std::mutex m_deliveryMutex;
    std::condition_variable m_delivered;
    std::unique_ptr<DaemonConnection> m_connection;
    ContextSource m_watch;
    ContextSource m_timer;
    std::thread::id m_deliveringThread; // none: the callback is not running
};
