#include "Subscribers.h"

#include <gtest/gtest.h>

#include "TestTv.h"

namespace {

using namespace interfaces;

constexpr std::int32_t kStarted = 81;

class SubscribersTest : public testing::Test {
protected:
    SubscribersTest() {
        first.ListenToSignals();
        second.ListenToSignals();
    }
    void Emit() { tv.components.subscribers.Emit(kStarted, {101, 2}, 5); }

    const Signals emitted{"81 101:2 0x5"};
    const Signals none;
    TestTv tv;
    TestClient first{tv};
    TestClient second{tv};
};

TEST_F(SubscribersTest, GetTheTvsOwnSignalsAsOftenAsTheyHaveSubscribed) {
    Emit();
    EXPECT_EQ(first.TakeSignals(), none);
    EXPECT_EQ(first.Subscribe(kStarted), kDone);
    EXPECT_EQ(first.Subscribe(kStarted), kDone);
    EXPECT_EQ(second.Subscribe(193), kDone);
    EXPECT_EQ(tv.State("/subscribers/0/subscriptions/81"), 2);
    Emit();
    // Once, regardless of the number of subscriptions.
    EXPECT_EQ(first.TakeSignals(), emitted);
    EXPECT_EQ(second.TakeSignals(), none);
    EXPECT_EQ(first.Unsubscribe(kStarted), kDone);
    Emit();
    EXPECT_EQ(first.TakeSignals(), emitted);
    EXPECT_EQ(first.Unsubscribe(kStarted), kDone);
    Emit();
    EXPECT_EQ(first.TakeSignals(), none);
    EXPECT_LT(first.Unsubscribe(kStarted), 0);
    EXPECT_TRUE(tv.Logged("norvex", "Unsubscribe refused: not subscribed to signal 81"));
}

TEST_F(SubscribersTest, EndWithTheirSession) {
    first.Subscribe(kStarted);
    first.Close<SignalSubscriberMethod>();
    Emit();
    EXPECT_EQ(first.TakeSignals(), none);
    EXPECT_EQ(tv.State("/subscribers").size(), 1u);
}

TEST_F(SubscribersTest, KeepTheirSubscriptionsWhileTheyAreDisconnected) {
    first.Subscribe(kStarted);
    first.Disconnect();
    EXPECT_EQ(tv.State("/subscribers/0/connected"), false);
    Emit(); // lost
    EXPECT_EQ(tv.State("/subscribers/0/subscriptions/81"), 1);
    first.Reconnect();
    first.ListenToSignals();
    EXPECT_EQ(tv.State("/subscribers/0/connected"), true);
    EXPECT_EQ(first.TakeSignals(), none);
    Emit();
    EXPECT_EQ(first.TakeSignals(), emitted);
    first.Die();
    EXPECT_EQ(tv.State("/subscribers").size(), 1u);
}

TEST_F(SubscribersTest, AreLimitedInTheirTypes) {
    for (std::int32_t type = 0; type < 256; ++type)
        EXPECT_EQ(first.Subscribe(type), kDone);
    EXPECT_LT(first.Subscribe(256), 0);
    EXPECT_TRUE(tv.Logged("norvex", "Subscribe refused"));
    EXPECT_EQ(first.Subscribe(0), kDone);
    EXPECT_EQ(first.Unsubscribe(1), kDone);
    EXPECT_EQ(first.Subscribe(256), kDone);
}

TEST_F(SubscribersTest, AllCallbacksGetASignalSentByCommand) {
    second.Subscribe(kStarted);
    EXPECT_EQ(tv.components.subscribers.SendToAll({4711, -3, 65535, ~std::uint64_t{0}}), 2u);
    const Signals expected{"4711 -3:65535 0xffffffffffffffff"};
    EXPECT_EQ(first.TakeSignals(), expected);
    EXPECT_EQ(second.TakeSignals(), expected);
    second.Disconnect();
    EXPECT_EQ(tv.components.subscribers.SendToAll({1, 1, 0, 0}), 1u);
}

class TuneSignal : public testing::Test {
protected:
    const Signals none;
    TestTv tv;
    TestClient client{tv};
};

TEST_F(TuneSignal, TellsTypeProfileAndNumberOfTheService) {
    client.ListenToSignals();
    client.SetService(kAirService); // not subscribed yet
    EXPECT_EQ(client.TakeSignals(), none);
    client.Subscribe(kStarted);
    client.SetService(kAirService); // the same one: starts again
    EXPECT_EQ(client.TakeSignals(), Signals{"81 1:0 0x700000002"});
    client.SetService(kOtherAirService); // negative fields do not affect others
    EXPECT_EQ(client.TakeSignals(), Signals{"81 1:0 0x80002ffff"});
    client.SetService(0x999); // refused
    EXPECT_EQ(client.TakeSignals(), none);
}

TEST_F(TuneSignal, NeedsTheTuner) {
    client.Subscribe(kStarted);
    client.SetSource(13);
    EXPECT_EQ(client.TakeSignals(), none);
    client.SetService(kAirService);
    EXPECT_EQ(client.TakeSignals().size(), 1u);
    client.SetSource(13);
    EXPECT_EQ(client.TakeSignals(), none);
    client.SetSource(0); // back at the service
    EXPECT_EQ(client.TakeSignals(), Signals{"81 1:0 0x700000002"});
}

TEST_F(TuneSignal, NeedsASignalOfTheServicesTransponder) {
    client.Subscribe(kStarted);
    tv.Set("tuner", {"air/474000", "off"});
    client.SetService(kAirService);
    EXPECT_EQ(client.TakeSignals(), none);
    EXPECT_EQ(tv.MainState("receiving"), false);
    tv.Set("tuner", {"air/482000", "off"});
    tv.Set("tuner", {"air/474000", "on"});
    EXPECT_EQ(client.TakeSignals(), Signals{"81 1:0 0x700000002"});
    tv.Set("tuner", {"air", "off"});
    EXPECT_EQ(tv.MainState("receiving"), false);
    client.SetService(kStreamedService); // needs none
    EXPECT_EQ(client.TakeSignals(), Signals{"81 1:0 0xa00000009"});
}

} // namespace
