#include "SignalSubscriber.h"

#include <algorithm>
#include <utility>

#include <glib-unix.h>

#include <interfaces/Interfaces.h>
#include <wire/Tree.h>

#include "RemoteCall.h"
#include "SignalRegistry.h"

namespace {

constexpr unsigned kRestoreMilliseconds = 100;
// Signals delivered in a row before the context's other sources have their turn.
constexpr int kSignalsInARow = 64;

struct Arrived {
    std::int32_t type = 0;
    std::int32_t profile = 0;
    std::uint16_t screen = 0;
    std::uint64_t data = 0;
};

// False if the message is not a signal.
bool ReadSignal(const wire::Message& message, Arrived& signal) {
    if (message.header.kind != wire::MessageKind::Signal || !wire::IsWellFormed(message.tree, message.header.treeSize))
        return false;
    bool hasType = false;
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    while (cursor.Next(node)) {
        if (node.tag == wire::kSignalType)
            hasType = node.Get(signal.type);
        else if (node.tag == wire::kSignalProfile)
            node.Get(signal.profile);
        else if (node.tag == wire::kSignalScreen)
            node.Get(signal.screen);
        else if (node.tag == wire::kSignalData)
            node.Get(signal.data);
    }
    return hasType;
}

gboolean OnReadable(gint, GIOCondition, gpointer number) {
    const auto subscriber = SignalRegistry::Get().Find(GPOINTER_TO_UINT(number));
    return subscriber != nullptr && subscriber->Deliver() ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

gboolean OnTimer(gpointer number) {
    const auto subscriber = SignalRegistry::Get().Find(GPOINTER_TO_UINT(number));
    return subscriber != nullptr && subscriber->Restore() ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

} // namespace

ISignalSubscriber::~ISignalSubscriber() = default;

SignalSubscriber::SignalSubscriber(NorvexSignalCallbackFunction callback, unsigned number)
    : m_callback(callback), m_number(number),
      m_session(std::make_unique<SessionConnection>(
          std::string(interfaces::kTable<interfaces::SignalSubscriberMethod>.name), 0, 0)),
      m_daemon(m_session->GetDaemon()) {}

SignalSubscriber::~SignalSubscriber() = default;

int SignalSubscriber::Start() {
    const std::lock_guard lock(m_callMutex);
    const Failure failure = m_session->Open();
    if (failure == Failure::Refused)
        return m_session->GetStatus();
    if (failure != Failure::None || !CatchUp())
        StartTimer();
    return 0;
}

void SignalSubscriber::End() {
    m_hasEnded = true;
    {
        std::unique_lock lock(m_deliveryMutex);
        m_delivered.wait(lock, [this] {
            return m_deliveringThread == std::thread::id() || m_deliveringThread == std::this_thread::get_id();
        });
    }
    // Restoring takes no longer than a call.
    const std::lock_guard callLock(m_callMutex);
    {
        const std::lock_guard lock(m_deliveryMutex);
        m_timer.Reset();
        m_watch.Reset();
        m_connection.reset();
    }
    m_session.reset();
}

int SignalSubscriber::CallSubscribe(const Subscription& subscription) {
    return RemoteCall(*m_session, interfaces::SignalSubscriberMethod::Subscribe)
        .In(subscription.type)
        .In(subscription.mode)
        .In(subscription.filter)
        .In(subscription.profile)
        .In(subscription.screen)
        .Make();
}

int SignalSubscriber::Subscribe(ESignalType type, int mode, int filter, int profile, int screen) {
    const std::lock_guard lock(m_callMutex);
    if (m_hasEnded)
        return -1;
    const Subscription subscription{type, mode, filter, profile, screen};
    const int status = CallSubscribe(subscription);
    // The call may have reached a new daemon, which does not have the earlier subscriptions yet.
    if (!CatchUp())
        StartTimer();
    if (status > 0)
        m_subscriptions.push_back(subscription);
    return status;
}

int SignalSubscriber::Unsubscribe(ESignalType type, int filter, int profile, int screen) {
    const std::lock_guard lock(m_callMutex);
    if (m_hasEnded)
        return -1;
    if (!CatchUp())
        StartTimer();
    // Removes the latest of them even if the call fails, so that it is not restored later.
    const auto found = std::find_if(m_subscriptions.rbegin(), m_subscriptions.rend(), [&](const Subscription& each) {
        return each.type == type && each.filter == filter && each.profile == profile && each.screen == screen;
    });
    if (found != m_subscriptions.rend())
        m_subscriptions.erase(std::next(found).base());
    return RemoteCall(*m_session, interfaces::SignalSubscriberMethod::Unsubscribe)
        .In(type)
        .In(filter)
        .In(profile)
        .In(screen)
        .Make();
}

// Restores the subscriptions in a reopened session. False: the timer retries. With m_callMutex
// held.
bool SignalSubscriber::CatchUp() {
    if (m_session->GetGeneration() == 0)
        return false;
    if (m_session->GetGeneration() != m_subscribedUnder && !Resubscribe()) {
        // Some of them may have been restored; a new session has none.
        m_session->Close();
        return false;
    }
    if (m_session->GetGeneration() == m_watchedUnder && IsWatching())
        return true;
    Failure failure = Failure::None;
    std::unique_ptr<DaemonConnection> connection = m_daemon->OpenSignals(m_session->GetSession(), failure);
    if (connection == nullptr || connection->generation != m_session->GetGeneration())
        return false;
    m_watchedUnder = connection->generation;
    Watch(std::move(connection));
    return true;
}

bool SignalSubscriber::Resubscribe() {
    const std::uint64_t generation = m_session->GetGeneration();
    for (const Subscription& subscription : m_subscriptions) {
        if (CallSubscribe(subscription) < 0 || m_session->GetGeneration() != generation)
            return false;
    }
    m_subscribedUnder = generation;
    return true;
}

bool SignalSubscriber::IsWatching() {
    const std::lock_guard lock(m_deliveryMutex);
    return m_connection != nullptr;
}

void SignalSubscriber::Watch(std::unique_ptr<DaemonConnection> connection) {
    const std::lock_guard lock(m_deliveryMutex);
    m_watch.Reset();
    m_connection = std::move(connection);
    GSource* source =
        g_unix_fd_source_new(m_connection->GetDescriptor(), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR));
    g_source_set_callback(source, G_SOURCE_FUNC(OnReadable), GUINT_TO_POINTER(m_number), nullptr);
    m_watch = ContextSource(source);
}

void SignalSubscriber::StartTimer() {
    const std::lock_guard lock(m_deliveryMutex);
    if (m_timer || m_hasEnded)
        return;
    GSource* source = g_timeout_source_new(kRestoreMilliseconds);
    g_source_set_callback(source, OnTimer, GUINT_TO_POINTER(m_number), nullptr);
    m_timer = ContextSource(source);
}

bool SignalSubscriber::Restore() {
    // Another thread is restoring, or in a call; retry with the next tick.
    const std::unique_lock lock(m_callMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return !m_hasEnded;
    if (m_hasEnded)
        return false;
    if (m_session->OpenQuietly() != Failure::None || !CatchUp())
        return true;
    const std::lock_guard deliveryLock(m_deliveryMutex);
    m_timer.Reset();
    return false;
}

bool SignalSubscriber::Deliver() {
    std::unique_lock lock(m_deliveryMutex);
    for (int count = 0; count < kSignalsInARow; ++count) {
        if (m_hasEnded || m_connection == nullptr || !m_watch.IsCurrent())
            return false;
        wire::Message message;
        const Failure failure = m_connection->TakePushed(message);
        if (failure == Failure::Unresponsive)
            return true;
        Arrived signal;
        if (failure != Failure::None) {
            m_watch.Reset();
            m_connection.reset();
            lock.unlock();
            // If this connection has ended, so have the idle ones: their knowledge of the daemon is
            // outdated.
            m_daemon->DropIdle();
            StartTimer();
            return false;
        }
        if (!ReadSignal(message, signal))
            continue;
        m_deliveringThread = std::this_thread::get_id();
        lock.unlock();
        m_callback(static_cast<ESignalType>(signal.type), static_cast<EProfile>(signal.profile), signal.screen,
                   TSSignalData{signal.data}, nullptr);
        lock.lock();
        m_deliveringThread = std::thread::id();
        m_delivered.notify_all();
    }
    return true;
}
