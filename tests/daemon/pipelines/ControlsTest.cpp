// The controls that set and return one property of a pipeline.
#include <gtest/gtest.h>

#include "TestTv.h"
#include "ValueJson.h"

namespace {

using namespace interfaces;
using sim::Rect;

std::int32_t CountReferences(TestClient& client) {
    return *client.Call(ReferenceCountMethod::GetReferenceCount, Out{-1}).Get<std::int32_t>(1);
}

TEST(ReferenceCount, IsTheNumberOfOpenSessionsOfThePipeline) {
    TestTv tv;
    TestClient first(tv);
    TestClient second(tv);
    EXPECT_EQ(CountReferences(first), 1); // the calling session
    const auto other = second.Open<AVControlMethod>();
    first.Open<ZoomControlMethod>();
    EXPECT_EQ(CountReferences(first), 3);
    EXPECT_EQ(tv.MainState("sessions"), 3);
    // Neither another pipeline nor an object without one.
    second.Open<AVControlMethod>({1, 1});
    second.Open<AVControlMethod>({101, 0});
    second.Open<SignalSubscriberMethod>();
    EXPECT_EQ(CountReferences(first), 3);
    EXPECT_EQ(second.Close(other), kDone);
    EXPECT_EQ(CountReferences(first), 2);
}

TEST(ReferenceCount, CountsADisconnectedClientUntilItsGraceHasPassed) {
    TestTv tv;
    TestClient client(tv);
    TestClient other(tv);
    other.Open<AVControlMethod>();
    other.Open<TunerControlMethod>();
    other.Disconnect();
    EXPECT_EQ(CountReferences(client), 3);
    other.Reconnect();
    EXPECT_EQ(CountReferences(client), 3);
    other.Die();
    EXPECT_EQ(CountReferences(client), 1);
}

TEST(AVControl, KeepsMutesAsTheyCome) {
    TestTv tv;
    TestClient client(tv, {1, 1});
    EXPECT_EQ(client.Do(AVControlMethod::MuteVideo, 5), kDone);
    EXPECT_TRUE(tv.Logged("tvvideosink", "pipeline 1:1: mute 5"));
    EXPECT_EQ(client.Do(AVControlMethod::MuteAudio, -7), kDone);
    EXPECT_TRUE(tv.Logged("tvaudiosink", "pipeline 1:1: mute -7"));
    EXPECT_EQ(tv.State("/pipelines/1:1/videoMute"), 5);
    EXPECT_EQ(tv.State("/pipelines/1:1/audioMute"), -7);
    EXPECT_EQ(tv.MainState("videoMute"), 0);
    // It stays when no client uses the pipeline any longer.
    client.Close<AVControlMethod>();
    EXPECT_EQ(tv.State("/pipelines/1:1/videoMute"), 5);
}

TEST(AVControl, CountsDecoderRestartsAndNotesTheTime) {
    TestTv tv;
    TestClient client(tv);
    EXPECT_FALSE(tv.MainState("events").contains("decoderRestarted"));
    for (int count = 0; count < 3; ++count)
        EXPECT_EQ(client.Do(AVControlMethod::RestartVideoDecoder), kDone);
    EXPECT_EQ(tv.MainState("decoderRestarts"), 3);
    EXPECT_TRUE(tv.MainState("events").contains("decoderRestarted"));
    EXPECT_TRUE(tv.Logged("tvvideodec", "3 times"));
}

TEST(VideoControl, CropsWithinTheScreenOnly) {
    TestTv tv;
    TestClient client(tv, {1001, 0});
    const Rect first{0, 0, 1, 1};           // from the first pixel
    const Rect second{1520, 680, 400, 400}; // up to the last one
    const auto crop = [&](const Rect& a, const Rect& b) { return client.Do(VideoControlMethod::SetCropVideo, a, b); };
    EXPECT_EQ(crop(first, second), kDone);
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/first"), sim::ToJson(first));
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/second"), sim::ToJson(second));
    for (const Rect& bad :
         {Rect{-1, 0, 10, 10}, Rect{0, -1, 10, 10}, Rect{0, 0, 0, 10}, Rect{0, 0, 10, 0}, Rect{0, 0, 10, -5},
          Rect{1521, 680, 400, 400}, Rect{0, 1071, 10, 10}, Rect{INT32_MAX, 0, INT32_MAX, 10}}) {
        EXPECT_LT(crop(bad, second), 0);
        EXPECT_TRUE(tv.Logged("tvvideodec", "refused: the first rectangle"));
        EXPECT_LT(crop(first, bad), 0);
        EXPECT_TRUE(tv.Logged("tvvideodec", "refused: the second rectangle"));
    }
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/first"), sim::ToJson(first));
}

TEST(VideoControl, BindsAWindow) {
    TestTv tv;
    TestClient client(tv);
    EXPECT_TRUE(tv.MainState("windowId").is_null());
    for (const std::int32_t window : {42, 0}) {
        EXPECT_EQ(client.Do(VideoControlMethod::SetWindowId, Out{window}), kDone);
        EXPECT_EQ(tv.MainState("windowId"), window);
    }
    const sim::Journal& journal = tv.context.journal;
    const nlohmann::json sent = journal.Describe(journal.GetEnd() - 1)["arguments"][1];
    EXPECT_EQ(sent["name"], "windowId");
    EXPECT_EQ(sent["direction"], "in") << "what is only read is in, however it travels";
    EXPECT_EQ(sent["value"], 0);
    EXPECT_LT(client.Do(VideoControlMethod::SetWindowId, Out{-1}), 0);
    EXPECT_TRUE(tv.Logged("tvvideosink", "SetWindowId refused"));
    EXPECT_EQ(tv.MainState("windowId"), 0);
}

TEST(TunerControl, TellsWhetherItsTransponderHasASignal) {
    TestTv tv;
    TestClient client(tv);
    const auto check = [&] { return client.Do(TunerControlMethod::CheckTunerSignalState); };
    EXPECT_EQ(check(), kDone);
    EXPECT_EQ(tv.Set("tuner", {"air", "off"}), "");
    EXPECT_EQ(check(), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "no signal at air"));
    EXPECT_EQ(tv.MainState("tuner/signal"), false);
    EXPECT_EQ(tv.Set("tuner", {"air", "on"}), "");
    EXPECT_EQ(check(), kDone);
    client.SetSource(0, kAirService);
    EXPECT_EQ(tv.MainState("tuner/at"), "air/474000");
    EXPECT_EQ(tv.Set("tuner", {"air/482000", "off"}), "");
    EXPECT_EQ(check(), kDone);
    EXPECT_EQ(tv.Set("tuner", {"air/474000", "off"}), "");
    EXPECT_EQ(check(), 0);
    EXPECT_EQ(tv.State("/inputs/cut"), nlohmann::json({"air/474000", "air/482000"}));
    EXPECT_EQ(tv.Set("tuner", {"air/474000", "on"}), "");
    EXPECT_EQ(check(), kDone);
}

TEST(DataControl, TellsCaptionsOfTheServiceOrAsSet) {
    TestTv tv;
    TestClient client(tv);
    const auto exist = [&] {
        const Reply reply = client.Call(DataControlMethod::CheckCaptionExist, Out<std::uint8_t>{0});
        EXPECT_EQ(reply.Status(), kDone);
        return *reply.Get<std::uint8_t>(1) != 0;
    };
    EXPECT_FALSE(exist());
    client.SetSource(0, kAirService);
    EXPECT_TRUE(exist());
    EXPECT_TRUE(tv.MainState("events").contains("captions"));
    client.SetSource(0, kOtherAirService);
    EXPECT_FALSE(exist());
    EXPECT_EQ(tv.Set("captions", {"on"}), "");
    EXPECT_TRUE(exist());
    EXPECT_EQ(tv.MainState("captions"), true);
    client.SetSource(0, kAirService);
    EXPECT_EQ(tv.Set("captions", {"off"}), "");
    EXPECT_FALSE(exist());
    EXPECT_EQ(tv.Set("captions", {"service"}), "");
    EXPECT_TRUE(exist());
    // Nothing is received without a signal.
    EXPECT_EQ(tv.Set("tuner", {"air", "off"}), "");
    EXPECT_FALSE(exist());
}

TEST(Inputs, RefuseUnknownValues) {
    TestTv tv;
    const std::pair<const char*, std::vector<std::string>> kBad[] = {
        {"tuner", {"air"}},
        {"tuner", {"air", "maybe"}},
        {"tuner", {"water", "off"}},
        {"tuner", {"air/", "off"}},
        {"tuner", {"air/-5", "off"}},
        {"tuner", {"air/5x", "off"}},
        {"captions", {}},
        {"captions", {"perhaps"}},
        {"hdmi", {"hdmi0", "plugged"}},
        {"hdmi", {"hdmi9", "plugged"}},
        {"hdmi", {"0", "plugged"}},
        {"hdmi", {"hdmi1", "on"}},
        {"preparation-limit", {"-1"}},
        {"zoom-limit", {"-1"}},
        {"zoom-limit", {"65"}},
    };
    for (const auto& [name, arguments] : kBad)
        EXPECT_NE(tv.Set(name, arguments), "") << name << testing::PrintToString(arguments);
    EXPECT_EQ(tv.State("/inputs/cut"), nlohmann::json::array());
}

TEST(Pipelines, ComeAndGoWithTheirSessionsAndSettings) {
    TestTv tv;
    TestClient client(tv);
    EXPECT_EQ(tv.State("/pipelines").size(), 1u); // the main one
    const auto session = client.Open<AVControlMethod>({7, 65535});
    EXPECT_TRUE(tv.State("/pipelines").contains("7:65535"));
    client.Close(session);
    EXPECT_FALSE(tv.State("/pipelines").contains("7:65535"));
    client.Close(client.Open<AVControlMethod>());
    EXPECT_TRUE(tv.State("/pipelines").contains("1:0"));
}

TEST(Pipelines, AreLimitedInNumber) {
    TestTv tv;
    TestClient client(tv);
    std::uint32_t session = 0;
    for (std::uint16_t screen = 1; screen < 1024; ++screen) {
        session = client.Open<AVControlMethod>({1, screen});
        EXPECT_NE(session, 0u);
    }
    EXPECT_EQ(client.Open<AVControlMethod>({1, 1024}), 0u);
    EXPECT_TRUE(tv.Logged("norvex", "pipeline 1:1024 refused"));
    EXPECT_NE(client.Open<AVControlMethod>({1, 0}), 0u);
    client.Close(session);
    EXPECT_NE(client.Open<AVControlMethod>({1, 1024}), 0u);
}

TEST(Pipelines, OneThatOnlyHasSettingsIsForgottenWhenThereAreTooMany) {
    TestTv tv;
    TestClient viewer(tv, {2, 0});
    EXPECT_EQ(viewer.Do(AVControlMethod::MuteVideo, 1), kDone);
    viewer.Close<AVControlMethod>();
    TestClient client(tv);
    for (std::uint16_t screen = 1; screen < 1023; ++screen)
        EXPECT_NE(client.Open<AVControlMethod>({1, screen}), 0u);
    EXPECT_EQ(tv.State("/pipelines/2:0/videoMute"), 1);
    EXPECT_NE(client.Open<AVControlMethod>({1, 1023}), 0u);
    EXPECT_FALSE(tv.State("/pipelines").contains("2:0"));
    EXPECT_TRUE(tv.Logged("norvex", "pipeline 2:0 forgotten"));
}

TEST(Pipelines, AreAsNewAfterAReset) {
    TestTv tv;
    TestClient client(tv);
    client.Do(AVControlMethod::MuteVideo, 1);
    client.Do(AVControlMethod::RestartVideoDecoder);
    tv.Set("tuner", {"air", "off"});
    tv.Set("captions", {"on"});
    tv.Set("hdmi", {"hdmi3", "unplugged"});
    tv.Set("preparation-limit", {"7"});
    tv.Set("zoom-limit", {"0"});
    tv.context.Reset();
    TestTv fresh;
    for (const char* path : {"/pipelines/1:0/videoMute", "/pipelines/1:0/decoderRestarts", "/pipelines/1:0/events",
                             "/inputs", "/preparation", "/zoom"})
        EXPECT_EQ(tv.State(path), fresh.State(path)) << path;
    // Sessions stay open.
    EXPECT_EQ(tv.MainState("sessions"), 1);
    EXPECT_EQ(client.Do(AVControlMethod::MuteVideo, 1), kDone);
}

} // namespace
