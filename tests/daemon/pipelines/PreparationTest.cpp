#include <gtest/gtest.h>

#include "Handle.h"
#include "TestTv.h"

namespace {

using namespace interfaces;

constexpr std::uint64_t kAny = kInvalidService;
constexpr std::int32_t kService = 0;
constexpr std::int32_t kSource = 1;

// An application with a pipeline utility.
class Application : public TestClient {
public:
    using TestClient::TestClient;

    std::int32_t Register(std::int32_t kind, const std::string& name) {
        return Do(PipelineUtilityMethod::RegisterForStateChange, kind, name, 0);
    }
    // At another pipeline, with a session only for that.
    std::int32_t RegisterAt(const sim::Handle& pipeline) {
        const std::uint32_t session = Open<PipelineUtilityMethod>(pipeline);
        const auto method = PipelineUtilityMethod::RegisterForStateChange;
        const Reply reply = Exchange(kTable<PipelineUtilityMethod>.name, session, GetMethodName(method),
                                     static_cast<std::int16_t>(method), CallTree(kService, "one", 0));
        Close(session);
        return reply.Status();
    }
    std::int32_t Unregister(std::int32_t kind, const std::string& name) {
        return Do(PipelineUtilityMethod::UnregisterFromStateChange, kind, name);
    }
    std::int32_t NotifyState(std::int32_t kind, const std::string& name, std::int32_t state, std::uint64_t service) {
        return Do(PipelineUtilityMethod::NotifyReceiverState, kind, name, state, service);
    }
    std::int32_t NotifyReady(const std::string& name, std::uint64_t service) {
        return Do(PipelineUtilityMethod::NotifyReadyForSetService, kService, name, 1, service);
    }
    Reply CheckPending(std::int32_t kind) {
        return Call(PipelineUtilityMethod::CheckPendingState, kind, Out<std::uint8_t>{0});
    }
    bool IsPending(std::int32_t kind) {
        const Reply reply = CheckPending(kind);
        EXPECT_EQ(reply.Status(), kDone);
        return *reply.Get<std::uint8_t>(2) != 0;
    }
};

// A client that changes the main pipeline, and the application that may delay the change.
class PreparationTest : public testing::Test {
protected:
    TestTv tv;
    TestClient viewer{tv};
    Application app{tv};
};

TEST_F(PreparationTest, NobodyRegisteredMeansNoWaiting) {
    EXPECT_EQ(viewer.SetService(kAirService), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_FALSE(app.IsPending(kService));
}

TEST_F(PreparationTest, HoldsAServiceUntilEveryReceiverIsReadyForIt) {
    EXPECT_EQ(app.Register(kService, "one"), kDone);
    EXPECT_EQ(app.Register(kService, "two"), kDone);
    EXPECT_EQ(viewer.SetService(kAirService), kDone); // at once
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_TRUE(app.IsPending(kService));
    EXPECT_FALSE(app.IsPending(kSource));
    EXPECT_EQ(tv.State("/preparation/pipelines/1:0/pending/service"), "0xfa0000000002002d");
    EXPECT_TRUE(tv.Logged("quarle-daemon", "waits for its receivers"));
    EXPECT_EQ(app.NotifyReady("one", kAirService), kDone);
    EXPECT_TRUE(app.IsPending(kService));
    EXPECT_EQ(app.NotifyReady("two", kOtherAirService), kDone); // for another service
    EXPECT_TRUE(app.IsPending(kService));
    EXPECT_EQ(app.NotifyReady("two", kAirService), kDone);
    EXPECT_FALSE(app.IsPending(kService));
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, ReadinessForAnyServiceCounts) {
    app.Register(kService, "one");
    viewer.SetService(kAirService);
    EXPECT_EQ(app.NotifyState(kService, "one", 1, kAny), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, ReadinessToldBeforeIsUsedUpByTheChange) {
    app.Register(kService, "one");
    app.NotifyReady("one", kAirService);
    viewer.SetService(kAirService);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    viewer.SetService(kAirService);
    EXPECT_TRUE(app.IsPending(kService));
}

TEST_F(PreparationTest, ReadinessCanBeTakenBack) {
    app.Register(kService, "one");
    app.NotifyState(kService, "one", 1, kAny);
    app.NotifyState(kService, "one", 0, kAny);
    viewer.SetService(kAirService);
    EXPECT_TRUE(app.IsPending(kService));
    EXPECT_EQ(tv.State("/preparation/pipelines/1:0/receivers/0/state"), 0);
}

TEST_F(PreparationTest, ReceiversOfSourcesHoldSourcesOnly) {
    app.Register(kSource, "one");
    EXPECT_EQ(viewer.SetService(kAirService), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_EQ(viewer.SetSource(13), kDone);
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_TRUE(app.IsPending(kSource));
    EXPECT_FALSE(app.IsPending(kService));
    EXPECT_EQ(tv.State("/preparation/pipelines/1:0/pending/source"), 13);
    EXPECT_EQ(app.NotifyState(kSource, "one", 1, kAny), kDone);
    EXPECT_EQ(tv.MainState("source"), 13);
}

TEST_F(PreparationTest, AChangeOfBothWaitsForBothKinds) {
    viewer.SetSource(13);
    app.Register(kSource, "source");
    app.Register(kService, "service");
    viewer.SetSource(0, kAirService);
    EXPECT_TRUE(app.IsPending(kSource));
    EXPECT_TRUE(app.IsPending(kService));
    app.NotifyReady("service", kAirService);
    EXPECT_EQ(tv.MainState("source"), 13);
    app.NotifyState(kSource, "source", 1, kAny);
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, ATvModeWaitsWithItsService) {
    app.Register(kService, "one");
    viewer.SetTvMode({1, 0}, kCableService);
    EXPECT_EQ(tv.MainState("tvMode/antenna"), 0);
    EXPECT_EQ(tv.State("/preparation/pipelines/1:0/pending/tvMode/antenna"), 1);
    app.NotifyReady("one", kCableService);
    EXPECT_EQ(tv.MainState("tvMode/antenna"), 1);
    EXPECT_EQ(tv.MainState("service"), "0x11");
}

TEST_F(PreparationTest, HappensWhenTheLastOneUnregisters) {
    app.Register(kService, "one");
    app.Register(kService, "two");
    viewer.SetService(kAirService);
    EXPECT_EQ(app.Unregister(kService, "one"), kDone);
    EXPECT_TRUE(app.IsPending(kService));
    EXPECT_EQ(app.Unregister(kService, "two"), kDone);
    EXPECT_FALSE(app.IsPending(kService));
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_FALSE(tv.State("/preparation/pipelines").contains("1:0"));
}

TEST_F(PreparationTest, HappensWhenTheLimitHasPassed) {
    EXPECT_EQ(tv.Set("preparation-limit", {"1"}), "");
    app.Register(kService, "one");
    viewer.SetService(kAirService);
    EXPECT_TRUE(app.IsPending(kService));
    tv.Logged("", "");
    tv.WaitUntil([&] { return !tv.MainState("service").is_null(); });
    EXPECT_TRUE(tv.Logged("quarle-daemon", "the limit has passed"));
    EXPECT_FALSE(app.IsPending(kService));
}

TEST_F(PreparationTest, ANewerChangeTakesThePlaceOfOneThatWaits) {
    app.Register(kService, "one");
    viewer.SetService(kAirService);
    viewer.SetService(kOtherAirService);
    EXPECT_TRUE(tv.Logged("quarle-daemon", " replaced"));
    app.NotifyReady("one", kAirService); // too late
    EXPECT_TRUE(app.IsPending(kService));
    app.NotifyReady("one", kOtherAirService);
    EXPECT_EQ(tv.MainState("service"), "0x8000000000000007");
    // So does a change that no receiver delays.
    viewer.SetService(kAirService);
    viewer.SetSource(13);
    EXPECT_EQ(tv.MainState("source"), 13);
    EXPECT_FALSE(app.IsPending(kService));
    EXPECT_EQ(tv.MainState("service"), "0x8000000000000007");
}

TEST_F(PreparationTest, ATvModeThatChangesNothingLeavesThePendingChange) {
    app.Register(kService, "one");
    viewer.SetService(kAirService);
    EXPECT_EQ(viewer.SetTvMode({0, 0}), kDone);
    EXPECT_EQ(tv.State("/preparation/pipelines/1:0/pending/service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, ARefusedChangeLeavesThePendingOne) {
    app.Register(kService, "one");
    viewer.SetService(kAirService);
    EXPECT_LT(viewer.SetService(kAny), 0);
    app.NotifyReady("one", kAirService);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, RegistrationsOutliveTheirSession) {
    app.Register(kService, "one");
    app.Close<PipelineUtilityMethod>();
    viewer.SetService(kAirService);
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_EQ(app.Unregister(kService, "one"), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, RegistrationsGoWithTheirClient) {
    app.Register(kService, "one");
    Application other(tv);
    other.Register(kService, "one"); // the same name is another receiver
    viewer.SetService(kAirService);
    app.NotifyReady("one", kAirService);
    other.Disconnect();
    EXPECT_TRUE(app.IsPending(kService));
    other.Reconnect();
    other.Die();
    EXPECT_FALSE(app.IsPending(kService));
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, ReceiversBelongToOnePipeline) {
    Application(tv, {101, 0}).Register(kService, "one");
    viewer.SetService(kAirService);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
}

TEST_F(PreparationTest, RefusesInvalidArguments) {
    EXPECT_LT(app.Register(2, "one"), 0);
    EXPECT_TRUE(tv.Logged("norvex", "unknown kind of change"));
    EXPECT_LT(app.Register(kService, ""), 0);
    EXPECT_LT(app.Register(kService, std::string(256, 'x')), 0);
    EXPECT_LT(app.Unregister(kService, "one"), 0);
    EXPECT_TRUE(tv.Logged("norvex", "\"one\" refused: is not registered"));
    EXPECT_LT(app.NotifyState(kService, "one", 1, kAny), 0);
    EXPECT_LT(app.NotifyReady("one", kAirService), 0);
    app.Register(kService, "one");
    EXPECT_LT(app.NotifyState(kSource, "one", 1, kAny), 0); // the other kind
    EXPECT_LT(app.NotifyState(-1, "one", 1, kAny), 0);
    EXPECT_LT(app.NotifyReady("one", kAny), 0);
    EXPECT_TRUE(tv.Logged("norvex", "NotifyReadyForSetService refused: the invalid service"));
    const Reply reply = app.CheckPending(2);
    EXPECT_LT(reply.Status(), 0);
    EXPECT_FALSE(reply.Find(2));
}

TEST_F(PreparationTest, ReceiversAreLimitedInNumber) {
    for (int number = 0; number < 256; ++number)
        EXPECT_EQ(app.Register(kService, std::to_string(number)), kDone);
    EXPECT_LT(app.Register(kService, "one too many"), 0);
    EXPECT_TRUE(tv.Logged("norvex", "already has 256 receivers"));
    EXPECT_EQ(app.Register(kService, "0"), kDone); // has its place
    EXPECT_EQ(app.Unregister(kService, "1"), kDone);
    EXPECT_EQ(app.Register(kService, "one too many"), kDone);
    // On all pipelines together, each client for itself.
    EXPECT_LT(app.RegisterAt({101, 0}), 0);
    EXPECT_EQ(Application(tv).RegisterAt({101, 0}), kDone);
    app.Die();
    EXPECT_EQ(tv.State("/preparation/pipelines").size(), 1u);
}

TEST_F(PreparationTest, APipelineStaysForItsReceiversAndCounts) {
    EXPECT_EQ(app.RegisterAt({101, 0}), kDone);
    EXPECT_TRUE(tv.State("/pipelines").contains("101:0"));
    for (std::uint16_t screen = 1; screen < 1023; ++screen)
        EXPECT_NE(viewer.Open<AVControlMethod>({1, screen}), 0u);
    EXPECT_EQ(viewer.Open<AVControlMethod>({1, 1023}), 0u);
    app.Die();
    EXPECT_FALSE(tv.State("/pipelines").contains("101:0"));
    EXPECT_NE(viewer.Open<AVControlMethod>({1, 1023}), 0u);
}

// The content of the snapshot: the events of each pipeline, and lines of text.
struct Snapshot {
    explicit Snapshot(const Reply& reply) {
        wire::NodeCursor parts(*reply.Find(1));
        wire::Node part;
        EXPECT_TRUE(parts.Next(part));
        wire::Node child;
        for (wire::NodeCursor all(part); all.Next(child);) {
            const std::string handle = ReadHandle(child);
            wire::Node times;
            for (wire::NodeCursor fields(child); fields.Next(times);) {
                if (times.tag == 2)
                    events[handle] = times.size / 12;
            }
        }
        EXPECT_TRUE(parts.Next(part));
        for (wire::NodeCursor all(part); all.Next(child);) {
            wire::Node field;
            std::string_view text;
            for (wire::NodeCursor fields(child); fields.Next(field);) {
                if (field.tag == 2) {
                    EXPECT_TRUE(wire::GetText(field, text));
                }
            }
            entries.push_back(ReadHandle(child) + " " + std::string(text));
        }
    }

    static std::string ReadHandle(const wire::Node& node) {
        wire::NodeCursor fields(node);
        wire::Node field;
        sim::Handle handle;
        EXPECT_TRUE(fields.Next(field) && field.Get(handle.profile));
        EXPECT_TRUE(fields.Next(field) && field.Get(handle.screen));
        return handle.ToText();
    }
    bool Has(const std::string& entry) const {
        return std::find(entries.begin(), entries.end(), entry) != entries.end();
    }

    std::map<std::string, std::uint32_t> events;
    std::vector<std::string> entries;
};

TEST_F(PreparationTest, TheStatusTellsOfAllPipelines) {
    const auto get = [&] {
        const Reply reply = app.Call(PipelineUtilityMethod::GetCurrentTPMSStatus, OutObject{});
        EXPECT_EQ(reply.Status(), kDone);
        return Snapshot(reply);
    };
    EXPECT_EQ(get().events, (std::map<std::string, std::uint32_t>{{"1:0", 0}}));
    viewer.SetService(kAirService);
    TestClient pip(tv, {101, 1});
    pip.Do(AVControlMethod::MuteVideo, 1);
    pip.Do(AVControlMethod::RestartVideoDecoder);
    app.Register(kSource, "one");
    viewer.SetSource(13);
    const Snapshot snapshot = get();
    // Started and captions; restarted.
    EXPECT_EQ(snapshot.events, (std::map<std::string, std::uint32_t>{{"1:0", 2}, {"101:1", 1}}));
    EXPECT_TRUE(snapshot.Has("1:0 source 0, antenna air, service mode 0"));
    EXPECT_TRUE(snapshot.Has("1:0 service 0xfa0000000002002d, received"));
    EXPECT_TRUE(snapshot.Has("1:0 pending: source 13"));
    EXPECT_TRUE(snapshot.Has("101:1 mute: video 1, audio 0"));
}

} // namespace
