#include <atomic>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include <glib.h>

#include <gtest/gtest.h>
#include <interfaces/Interfaces.h>
#include <norvex/client/NorvexAPI.h>
#include <norvex/client/SignalSubscriber.h>

#include "FakeService.h"

namespace {

struct Received {
    int type;
    int profile;
    unsigned short screen;
    std::uint64_t data;
    bool operator==(const Received&) const = default;
};

// What the callback has seen, and what it does about it.
struct Callback {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Received> received;
    std::thread::id thread;
    std::function<void()> act;

    std::size_t GetCount() {
        const std::lock_guard lock(mutex);
        return received.size();
    }
    void AwaitCount(std::size_t count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return received.size() >= count; });
    }
};

Callback* g_callback = nullptr;

int OnSignal(ESignalType type, EProfile profile, unsigned short screen, TSSignalData data, void* userData) {
    EXPECT_EQ(userData, nullptr);
    Callback& callback = *g_callback;
    {
        const std::lock_guard lock(callback.mutex);
        callback.received.push_back({type, profile, screen, data.m_value});
        callback.thread = std::this_thread::get_id();
    }
    callback.changed.notify_all();
    if (callback.act)
        callback.act();
    return 7;
}

int OnOtherSignal(ESignalType, EProfile, unsigned short, TSSignalData, void*) {
    return 0;
}

// GLib's default context, iterated by a thread of its own.
class LoopThread {
public:
    LoopThread() {
        m_thread = std::thread([this] {
            while (!m_end)
                g_main_context_iteration(nullptr, TRUE);
        });
    }
    ~LoopThread() {
        m_end = true;
        g_main_context_wakeup(nullptr);
        m_thread.join();
    }
    std::thread::id GetId() const { return m_thread.get_id(); }

private:
    std::atomic<bool> m_end{false};
    std::thread m_thread;
};

// A daemon's run: one connection for calls, which are answered, and one for signals.
class DaemonRun {
public:
    DaemonRun(FakeService& service, std::uint64_t epoch, std::uint32_t session) {
        m_thread = std::thread([this, &service, epoch, session] {
            const auto calls = service.Accept();
            EXPECT_EQ(calls->Welcome(epoch), wire::Role::Calls);
            wire::Message message;
            while (calls->Receive(message)) {
                if (message.method == GetMethodName(interfaces::NorvexSessionMethod::Open)) {
                    wire::Buffer tree;
                    wire::TreeWriter writer(tree);
                    writer.PutValue(0, std::int32_t{0});
                    writer.PutValue(1, session);
                    calls->Reply(message, tree);
                } else {
                    {
                        const std::lock_guard lock(m_mutex);
                        m_calls.push_back(Describe(message));
                    }
                    calls->Reply(message, 1);
                    m_changed.notify_all();
                    if (message.method == GetMethodName(interfaces::NorvexSessionMethod::Close))
                        break;
                    continue;
                }
                // The signals' connection follows when all is subscribed; it is taken in between.
                m_accepting = std::thread([this, &service, epoch, session] {
                    auto signals = service.Accept();
                    EXPECT_EQ(signals->Welcome(epoch), wire::Role::Signals);
                    EXPECT_EQ(signals->helloSession, session);
                    const std::lock_guard lock(m_mutex);
                    m_signals = std::move(signals);
                    m_changed.notify_all();
                });
            }
            if (m_accepting.joinable())
                m_accepting.join();
        });
    }
    ~DaemonRun() { m_thread.join(); }

    FakeService::Connection& GetSignals() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_signals != nullptr; });
        return *m_signals;
    }
    std::vector<std::string> AwaitCalls(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_calls.size() >= count; });
        return m_calls;
    }

private:
    static std::string Describe(const wire::Message& message) {
        std::string text(message.method);
        wire::NodeCursor cursor(message.tree, message.header.treeSize);
        wire::Node node;
        while (cursor.Next(node)) {
            std::int32_t number = 0;
            if (node.direction == wire::Direction::In && node.Get(number))
                text += " " + std::to_string(number);
        }
        return text;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_calls;
    std::unique_ptr<FakeService::Connection> m_signals;
    std::thread m_accepting;
    std::thread m_thread;
};

class SignalTest : public testing::Test {
protected:
    SignalTest() { g_callback = &callback; }
    ~SignalTest() override {
        // What is still in the context would reach the next test.
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }

    ISignalSubscriber* Create() {
        ISignalSubscriber* subscriber = nullptr;
        EXPECT_EQ(NorvexAPI::CreateSignalSubscriber(OnSignal, &subscriber), 0);
        return subscriber;
    }
    // A subscriber with these types whose daemon has died, which it knows.
    ISignalSubscriber* CreateWithoutDaemon(const std::vector<ESignalType>& types) {
        DaemonRun run(service, 1, 5);
        ISignalSubscriber* subscriber = Create();
        for (const ESignalType type : types)
            EXPECT_EQ(subscriber->Subscribe(type, 0, 702, 0, 0), 1);
        service.StopListening();
        run.GetSignals().Close();
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
        return subscriber;
    }
    static int Destroy() { return NorvexAPI::DestroySignalSubscriber(OnSignal); }

    Variable connectLimit{"NORVEX_CONNECT_LIMIT_MS", "20000"};
    Variable callLimit{"NORVEX_CALL_LIMIT_MS", "20000"};
    FakeService service;
    Callback callback;
};

} // namespace

TEST_F(SignalTest, ComeOnTheThreadThatIteratesTheContextInTheirOrder) {
    DaemonRun run(service, 1, 5);
    ASSERT_NE(Create(), nullptr);
    FakeService::Connection& signals = run.GetSignals();
    signals.SendSignal(81, 1, 0, UINT64_MAX);
    signals.SendSignal(195, -1, 65535, 0x8000000000000000);
    signals.SendSignal(7, 1001, 1, 0);
    EXPECT_EQ(callback.GetCount(), 0u) << "nobody iterates yet";
    {
        const LoopThread loop;
        callback.AwaitCount(3);
        EXPECT_EQ(callback.thread, loop.GetId());
    }
    EXPECT_EQ(callback.received,
              (std::vector<Received>{{81, 1, 0, UINT64_MAX}, {195, -1, 65535, 0x8000000000000000}, {7, 1001, 1, 0}}));
    EXPECT_EQ(Destroy(), 0);
}

TEST_F(SignalTest, SubscribingIsACall) {
    DaemonRun run(service, 1, 5);
    ISignalSubscriber* subscriber = Create();
    ASSERT_NE(subscriber, nullptr);
    EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), 1);
    EXPECT_EQ(subscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 3, 1), 1);
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(run.AwaitCalls(3),
              (std::vector<std::string>{"Subscribe 81 0 702 0 0", "Unsubscribe 81 702 3 1", "Close 5"}));
}

TEST_F(SignalTest, ACallbackIsRegisteredOnceAtATime) {
    DaemonRun run(service, 1, 5);
    ASSERT_NE(Create(), nullptr);
    ISignalSubscriber* second = nullptr;
    EXPECT_LT(NorvexAPI::CreateSignalSubscriber(OnSignal, &second), 0);
    EXPECT_EQ(second, nullptr);
    EXPECT_LT(NorvexAPI::DestroySignalSubscriber(OnOtherSignal), 0);
    EXPECT_EQ(Destroy(), 0);
    EXPECT_LT(Destroy(), 0);
    EXPECT_LT(NorvexAPI::CreateSignalSubscriber(nullptr, &second), 0);
    EXPECT_LT(NorvexAPI::CreateSignalSubscriber(OnSignal, nullptr), 0);
}

TEST_F(SignalTest, UnregisteringWaitsForACallThatIsUnderWay) {
    DaemonRun run(service, 1, 5);
    ASSERT_NE(Create(), nullptr);
    std::atomic<bool> mayLeave{false};
    std::atomic<bool> hasLeft{false};
    callback.act = [&] {
        while (!mayLeave)
            std::this_thread::yield();
        hasLeft = true;
    };
    const LoopThread loop;
    run.GetSignals().SendSignal(81, 1, 0, 0);
    run.GetSignals().SendSignal(81, 1, 0, 1);
    callback.AwaitCount(1);
    std::thread leaving([&] {
        // The unregistering below has no way of telling that it waits; it has every chance to be
        // wrong.
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        mayLeave = true;
    });
    EXPECT_EQ(Destroy(), 0);
    EXPECT_TRUE(hasLeft);
    EXPECT_EQ(callback.GetCount(), 1u) << "none comes afterwards";
    leaving.join();
}

TEST_F(SignalTest, TheCallbackMayUnregisterItself) {
    DaemonRun run(service, 1, 5);
    ASSERT_NE(Create(), nullptr);
    std::atomic<int> destroyed{-1};
    callback.act = [&] { destroyed = Destroy(); };
    run.GetSignals().SendSignal(81, 1, 0, 0);
    run.GetSignals().SendSignal(81, 1, 0, 1);
    run.GetSignals();
    while (callback.GetCount() == 0)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_EQ(destroyed, 0);
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    EXPECT_EQ(callback.GetCount(), 1u);
}

TEST_F(SignalTest, TheCallbackMaySubscribe) {
    DaemonRun run(service, 1, 5);
    ISignalSubscriber* subscriber = Create();
    ASSERT_NE(subscriber, nullptr);
    std::atomic<int> status{0};
    callback.act = [&] { status = subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0); };
    run.GetSignals().SendSignal(81, 1, 0, 0);
    while (callback.GetCount() == 0)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(Destroy(), 0);
}

TEST_F(SignalTest, LeavingWorksWhileNobodyIteratesTheContext) {
    for (std::uint32_t session = 1; session < 20; ++session) {
        DaemonRun run(service, 1, session);
        ASSERT_NE(Create(), nullptr);
        run.GetSignals().SendSignal(81, 1, 0, 0);
        EXPECT_EQ(Destroy(), 0);
    }
    EXPECT_EQ(callback.GetCount(), 0u);
}

TEST_F(SignalTest, ARestartedDaemonFindsEverySubscriptionAgain) {
    const LoopThread loop;
    ISignalSubscriber* subscriber = nullptr;
    {
        DaemonRun run(service, 1, 5);
        subscriber = Create();
        ASSERT_NE(subscriber, nullptr);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), 1);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), 1);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_TUNE_AROUND_FINISHED, 0, 702, 0, 0), 1);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 702, 0, 0), 1);
        EXPECT_EQ(subscriber->Unsubscribe(SIGNAL_TUNE_AROUND_FINISHED, 702, 0, 0), 1);
        run.GetSignals();
        service.StopListening();
        run.GetSignals().Close();
        // The loop's thread notices and gives the calls' connection up as well.
    }
    service.Listen();
    DaemonRun run(service, 2, 9);
    EXPECT_EQ(run.AwaitCalls(3), (std::vector<std::string>{"Subscribe 81 0 702 0 0", "Subscribe 81 0 702 0 0",
                                                           "Subscribe 195 0 702 0 0"}));
    run.GetSignals().SendSignal(81, 1, 0, 3);
    callback.AwaitCount(1);
    EXPECT_EQ(Destroy(), 0);
}

TEST_F(SignalTest, WithoutADaemonTheSubscriberLivesAndWaitsForOne) {
    service.StopListening();
    const LoopThread loop;
    ISignalSubscriber* subscriber = Create();
    ASSERT_NE(subscriber, nullptr);
    EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), -1);
    service.Listen();
    DaemonRun run(service, 1, 5);
    run.GetSignals().SendSignal(194, 1, 0, 3);
    callback.AwaitCount(1);
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(run.AwaitCalls(1), std::vector<std::string>{"Close 5"}) << "nothing was subscribed";
}

TEST_F(SignalTest, ASubscriptionThatIsRemovedWithoutADaemonDoesNotComeBack) {
    ISignalSubscriber* subscriber = CreateWithoutDaemon({SIGNAL_SI_STARTED, SIGNAL_BARKER_CHANNEL_TUNE});
    EXPECT_EQ(subscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 0, 0), -1);
    service.Listen();
    DaemonRun run(service, 2, 9);
    const LoopThread loop;
    EXPECT_EQ(run.AwaitCalls(1), (std::vector<std::string>{"Subscribe 195 0 702 0 0"}));
    run.GetSignals();
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(run.AwaitCalls(2), (std::vector<std::string>{"Subscribe 195 0 702 0 0", "Close 9"}));
}

TEST_F(SignalTest, ACallThatFindsTheNewDaemonFirstBringsTheOthersBack) {
    ISignalSubscriber* subscriber = CreateWithoutDaemon({SIGNAL_SI_STARTED});
    service.Listen();
    DaemonRun run(service, 2, 9);
    EXPECT_EQ(subscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 702, 0, 0), 1);
    EXPECT_EQ(run.AwaitCalls(2), (std::vector<std::string>{"Subscribe 195 0 702 0 0", "Subscribe 81 0 702 0 0"}));
    run.GetSignals().SendSignal(81, 1, 0, 3);
    while (callback.GetCount() == 0)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_EQ(Destroy(), 0);
}

TEST_F(SignalTest, OfTwoFiltersTheOneThatIsRemovedDoesNotComeBack) {
    ISignalSubscriber* subscriber = nullptr;
    {
        DaemonRun run(service, 1, 5);
        subscriber = Create();
        ASSERT_NE(subscriber, nullptr);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), 1);
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 703, 0, 0), 1);
        service.StopListening();
        run.GetSignals().Close();
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }
    EXPECT_EQ(subscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 0, 0), -1);
    service.Listen();
    DaemonRun run(service, 2, 9);
    const LoopThread loop;
    run.GetSignals();
    EXPECT_EQ(Destroy(), 0);
    EXPECT_EQ(run.AwaitCalls(2), (std::vector<std::string>{"Subscribe 81 0 703 0 0", "Close 9"}));
}

TEST_F(SignalTest, ASubscriptionIsRestoredOnceAlthoughAnotherOneFailed) {
    CreateWithoutDaemon({SIGNAL_SI_STARTED, SIGNAL_BARKER_CHANNEL_TUNE});
    service.Listen();
    std::vector<std::string> calls;
    std::promise<void> restored;
    std::thread far([&] {
        const auto connection = service.Accept();
        connection->Welcome(2);
        std::unique_ptr<FakeService::Connection> signals;
        wire::Message message;
        std::uint32_t session = 8;
        while (connection->Receive(message)) {
            calls.push_back(std::string(message.method) + " " + std::to_string(message.header.session));
            wire::Buffer tree;
            wire::TreeWriter writer(tree);
            // The second of the first session is refused.
            writer.PutValue(0, std::int32_t{calls.size() == 3 ? -4 : 1});
            if (message.method == "Open")
                writer.PutValue(1, ++session);
            connection->Reply(message, tree);
            if (calls.size() == 7) {
                signals = service.Accept();
                signals->Welcome(2);
                restored.set_value();
            }
        }
    });
    {
        const LoopThread loop;
        restored.get_future().wait();
    }
    EXPECT_EQ(Destroy(), 0);
    far.join();
    EXPECT_EQ(calls, (std::vector<std::string>{"Open 0", "Subscribe 9", "Subscribe 9", "Close 0", "Open 0",
                                               "Subscribe 10", "Subscribe 10", "Close 0"}));
}

TEST_F(SignalTest, SignalsOfANewerDaemonAreNotTakenForAnOlderOnesSession) {
    std::promise<void> ended;
    std::thread far([&] {
        const auto calls = service.Accept();
        calls->Welcome(1);
        wire::Message message;
        ASSERT_TRUE(calls->Receive(message));
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        writer.PutValue(0, std::int32_t{0});
        writer.PutValue(1, std::uint32_t{5});
        calls->Reply(message, tree);
        const auto signals = service.Accept();
        signals->Welcome(2);
        signals->AwaitEnd();
        ended.set_value();
        const auto next = service.Accept();
        next->Welcome(2);
        EXPECT_EQ(FakeService::Serve(*next), std::vector<std::string>{});
    });
    ASSERT_NE(Create(), nullptr);
    ended.get_future().wait();
    EXPECT_EQ(Destroy(), 0);
    far.join();
}

TEST_F(SignalTest, ManySignalsComeWithoutOneLost) {
    constexpr std::size_t kCount = 10000;
    DaemonRun run(service, 1, 5);
    ISignalSubscriber* subscriber = Create();
    ASSERT_NE(subscriber, nullptr);
    FakeService::Connection& signals = run.GetSignals();
    const LoopThread loop;
    std::thread sending([&] {
        for (std::size_t i = 0; i < kCount; ++i)
            signals.SendSignal(193, 1, 0, i);
    });
    // The menu continues to work meanwhile.
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(subscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0), 1);
    callback.AwaitCount(kCount);
    sending.join();
    EXPECT_EQ(Destroy(), 0);
    for (std::size_t i = 0; i < kCount; ++i)
        ASSERT_EQ(callback.received[i].data, i);
}
