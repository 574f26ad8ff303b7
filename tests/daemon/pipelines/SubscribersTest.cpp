#include <gtest/gtest.h>

#include "Subscribers.h"
#include "TestTv.h"

namespace {

using Signals = std::vector<std::string>;

constexpr std::int32_t kStarted = 81;

// A client with a registered callback.
class Listener {
public:
    explicit Listener(TestTv& tv) : client(tv), session(client.Open("ISignalSubscriber", 0)) {
        client.ListenTo(session);
    }

    std::int32_t Subscribe(std::int32_t type) {
        return client.Call(session, "Subscribe", 0, CallTree().In(type).In(0).In(702).In(0).In(0))
            .Status();
    }
    std::int32_t Unsubscribe(std::int32_t type) {
        return client.Call(session, "Unsubscribe", 1, CallTree().In(type).In(702).In(0).In(0))
            .Status();
    }

    TestClient client;
    std::uint32_t session;
};

TEST(Subscribers, GetTheTvsOwnSignalsAsOftenAsTheyHaveSubscribed) {
    TestTv tv;
    Listener first(tv);
    Listener second(tv);
    const auto emit = [&] { tv.parts.subscribers.Emit(kStarted, {101, 2}, 5); };
    emit();
    EXPECT_EQ(first.client.TakeSignals(), Signals{});
    EXPECT_EQ(first.Subscribe(kStarted), kDone);
    EXPECT_EQ(first.Subscribe(kStarted), kDone);
    EXPECT_EQ(second.Subscribe(193), kDone);
    EXPECT_EQ(tv.State("/subscribers/0/subscriptions/81"), 2);
    emit();
    // Once, however often it has subscribed.
    EXPECT_EQ(first.client.TakeSignals(), Signals{"81 101:2 0x5"});
    EXPECT_EQ(second.client.TakeSignals(), Signals{});
    EXPECT_EQ(first.Unsubscribe(kStarted), kDone);
    emit();
    EXPECT_EQ(first.client.TakeSignals(), Signals{"81 101:2 0x5"});
    EXPECT_EQ(first.Unsubscribe(kStarted), kDone);
    emit();
    EXPECT_EQ(first.client.TakeSignals(), Signals{});
    EXPECT_LT(first.Unsubscribe(kStarted), 0);
    EXPECT_TRUE(tv.Logged("norvex", "Unsubscribe refused: not subscribed to signal 81"));
}

TEST(Subscribers, EndWithTheirSession) {
    TestTv tv;
    Listener listener(tv);
    listener.Subscribe(kStarted);
    listener.client.Close(listener.session);
    tv.parts.subscribers.Emit(kStarted, {1, 0}, 5);
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
    EXPECT_EQ(tv.State("/subscribers"), nlohmann::json::array());
}

TEST(Subscribers, AreLimitedInTheirTypes) {
    TestTv tv;
    Listener listener(tv);
    for (std::int32_t type = 0; type < 256; ++type)
        EXPECT_EQ(listener.Subscribe(type), kDone);
    EXPECT_LT(listener.Subscribe(256), 0);
    EXPECT_TRUE(tv.Logged("norvex", "Subscribe refused"));
    EXPECT_EQ(listener.Subscribe(0), kDone);
}

TEST(Subscribers, AllCallbacksGetASignalSentByOrder) {
    TestTv tv;
    Listener first(tv);
    Listener second(tv);
    second.Subscribe(kStarted);
    EXPECT_EQ(tv.parts.subscribers.SendToAll({4711, -3, 65535, ~std::uint64_t{0}}), 2u);
    const Signals expected{"4711 -3:65535 0xffffffffffffffff"};
    EXPECT_EQ(first.client.TakeSignals(), expected);
    EXPECT_EQ(second.client.TakeSignals(), expected);
}

class TuneSignal : public testing::Test {
protected:
    void Tune(std::uint64_t service) {
        listener.client.Call(navigation, "SetService", 5,
                             CallTree().In(service).In(0).In(0).Text(""));
    }
    void SetSource(std::int32_t value) {
        listener.client.Call(source, "SetSource", 0, CallTree().In(value).Text(""));
    }

    TestTv tv;
    Listener listener{tv};
    std::uint32_t navigation = listener.client.Open("IServiceNavigation");
    std::uint32_t source = listener.client.Open("ISourceControl");
};

TEST_F(TuneSignal, TellsTypeProfileAndNumberOfTheService) {
    Tune(kAirService); // not subscribed yet
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
    listener.Subscribe(kStarted);
    Tune(kAirService); // the same one: it begins anew
    EXPECT_EQ(listener.client.TakeSignals(), Signals{"81 1:0 0x700000002"});
    Tune(kOtherAirService); // negative fields keep to their place
    EXPECT_EQ(listener.client.TakeSignals(), Signals{"81 1:0 0x80002ffff"});
    Tune(0x999); // refused
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
}

TEST_F(TuneSignal, NeedsTheTuner) {
    listener.Subscribe(kStarted);
    SetSource(13);
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
    Tune(kAirService);
    EXPECT_EQ(listener.client.TakeSignals().size(), 1u);
    SetSource(13);
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
    SetSource(0); // back at the service
    EXPECT_EQ(listener.client.TakeSignals(), Signals{"81 1:0 0x700000002"});
}

TEST_F(TuneSignal, NeedsASignalOfTheServicesTransponder) {
    listener.Subscribe(kStarted);
    tv.Set("tuner", {"air/474000", "off"});
    Tune(kAirService);
    EXPECT_EQ(listener.client.TakeSignals(), Signals{});
    EXPECT_EQ(tv.State("/pipelines/1:0/receiving"), false);
    tv.Set("tuner", {"air/482000", "off"});
    tv.Set("tuner", {"air/474000", "on"});
    EXPECT_EQ(listener.client.TakeSignals(), Signals{"81 1:0 0x700000002"});
    tv.Set("tuner", {"air", "off"});
    EXPECT_EQ(tv.State("/pipelines/1:0/receiving"), false);
    Tune(kStreamedService); // needs none
    EXPECT_EQ(listener.client.TakeSignals(), Signals{"81 1:0 0xa00000009"});
}

} // namespace
