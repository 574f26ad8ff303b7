// The controls that set one thing of a pipeline and can be asked for it.
#include <gtest/gtest.h>

#include "TestTv.h"

namespace {

using sim::Rect;

TEST(ReferenceCount, IsTheNumberOfOpenSessionsOfThePipeline) {
    TestTv tv;
    TestClient first(tv);
    TestClient second(tv);
    const auto count = [&](std::uint32_t session) {
        return *first.Call(session, "GetReferenceCount", 0, CallTree().Out(std::int32_t{-1}))
                    .Get<std::int32_t>(1);
    };
    const auto session = first.Open("IReferenceCount");
    EXPECT_EQ(count(session), 1); // the one that asks
    const auto other = second.Open("IAVControl");
    first.Open("IZoomControl");
    EXPECT_EQ(count(session), 3);
    EXPECT_EQ(tv.State("/pipelines/1:0/sessions"), 3);
    // Neither another pipeline nor an object without one.
    second.Open("IAVControl", 1, 1);
    second.Open("IAVControl", 101);
    second.Open("ISignalSubscriber", 0);
    EXPECT_EQ(count(session), 3);
    second.Close(other);
    EXPECT_EQ(count(session), 2);
}

TEST(ReferenceCount, SessionsOfADeadClientDoNotCount) {
    TestTv tv;
    TestClient client(tv);
    TestClient dying(tv);
    const auto session = client.Open("IReferenceCount");
    dying.Open("IAVControl");
    dying.Open("ITunerControl");
    EXPECT_EQ(tv.State("/pipelines/1:0/sessions"), 3);
    dying.Die();
    EXPECT_EQ(*client.Call(session, "GetReferenceCount", 0, CallTree().Out(std::int32_t{-1}))
                   .Get<std::int32_t>(1),
              1);
}

TEST(AVControl, KeepsMutesAsTheyCome) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("IAVControl", 1, 1);
    EXPECT_EQ(client.Call(session, "MuteVideo", 1, CallTree().In(std::int32_t{5})).Status(), kDone);
    EXPECT_TRUE(tv.Logged("tvvideosink", "pipeline 1:1: mute 5"));
    EXPECT_EQ(client.Call(session, "MuteAudio", 2, CallTree().In(std::int32_t{-7})).Status(),
              kDone);
    EXPECT_TRUE(tv.Logged("tvaudiosink", "pipeline 1:1: mute -7"));
    EXPECT_EQ(tv.State("/pipelines/1:1/videoMute"), 5);
    EXPECT_EQ(tv.State("/pipelines/1:1/audioMute"), -7);
    EXPECT_EQ(tv.State("/pipelines/1:0/videoMute"), 0);
    // It stays when nobody has the pipeline any more.
    client.Close(session);
    EXPECT_EQ(tv.State("/pipelines/1:1/videoMute"), 5);
}

TEST(AVControl, CountsDecoderRestartsAndNotesTheTime) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("IAVControl");
    EXPECT_FALSE(tv.State("/pipelines/1:0/events").contains("decoderRestarted"));
    for (int count = 0; count < 3; ++count)
        EXPECT_EQ(client.Call(session, "RestartVideoDecoder", 0).Status(), kDone);
    EXPECT_EQ(tv.State("/pipelines/1:0/decoderRestarts"), 3);
    EXPECT_TRUE(tv.State("/pipelines/1:0/events").contains("decoderRestarted"));
    EXPECT_TRUE(tv.Logged("tvvideodec", "3 times"));
}

TEST(VideoControl, CropsWithinTheScreenOnly) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("IVideoControl", 1001);
    const Rect first{540, 380, 100, 100};
    const Rect second{1520, 680, 400, 400}; // up to the last pixel
    const auto crop = [&](const Rect& a, const Rect& b) {
        return client.Call(session, "SetCropVideo", 0, CallTree().Rect(a).Rect(b)).Status();
    };
    EXPECT_EQ(crop(first, second), kDone);
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/first/x"), 540);
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/second/height"), 400);
    for (const Rect& bad :
         {Rect{-1, 0, 10, 10}, Rect{0, -1, 10, 10}, Rect{0, 0, 0, 10}, Rect{0, 0, 10, -5},
          Rect{1521, 680, 400, 400}, Rect{0, 1071, 10, 10}, Rect{INT32_MAX, 0, INT32_MAX, 10}}) {
        EXPECT_LT(crop(bad, second), 0);
        EXPECT_TRUE(tv.Logged("tvvideodec", "refused: the first rectangle"));
        EXPECT_LT(crop(first, bad), 0);
        EXPECT_TRUE(tv.Logged("tvvideodec", "refused: the second rectangle"));
    }
    EXPECT_EQ(tv.State("/pipelines/1001:0/crop/first/x"), 540);
}

TEST(VideoControl, BindsAWindow) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("IVideoControl");
    EXPECT_TRUE(tv.State("/pipelines/1:0/windowId").is_null());
    EXPECT_EQ(client.Call(session, "SetWindowId", 1, CallTree().Out(std::int32_t{42})).Status(),
              kDone);
    EXPECT_EQ(tv.State("/pipelines/1:0/windowId"), 42);
    EXPECT_LT(client.Call(session, "SetWindowId", 1, CallTree().Out(std::int32_t{-1})).Status(), 0);
    EXPECT_TRUE(tv.Logged("tvvideosink", "SetWindowId refused"));
    EXPECT_EQ(tv.State("/pipelines/1:0/windowId"), 42);
}

TEST(TunerControl, TellsWhetherThereIsASignal) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("ITunerControl");
    const auto check = [&] { return client.Call(session, "CheckTunerSignalState", 0).Status(); };
    EXPECT_EQ(check(), kDone);
    EXPECT_EQ(tv.Set("tuner", {"air", "off"}), "");
    EXPECT_EQ(check(), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "no signal at air"));
    EXPECT_EQ(tv.State("/pipelines/1:0/tuner/signal"), false);
    EXPECT_EQ(tv.Set("tuner", {"air", "on"}), "");
    EXPECT_EQ(check(), kDone);
}

TEST(TunerControl, HasTheSignalOfItsOwnTransponder) {
    TestTv tv;
    TestClient client(tv);
    const auto tuner = client.Open("ITunerControl");
    const auto check = [&] { return client.Call(tuner, "CheckTunerSignalState", 0).Status(); };
    const auto source = client.Open("ISourceControl");
    client.Call(source, "SetSource", 1, CallTree().In(std::int32_t{0}).In(kAirService).Text(""));
    EXPECT_EQ(tv.State("/pipelines/1:0/tuner/at"), "air/474000");
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
    const auto session = client.Open("IDataControl");
    const auto source = client.Open("ISourceControl");
    const auto exist = [&] {
        const Reply reply =
            client.Call(session, "CheckCaptionExist", 0, CallTree().Out(std::uint8_t{0}));
        EXPECT_EQ(reply.Status(), kDone);
        return *reply.Get<std::uint8_t>(1) != 0;
    };
    const auto tune = [&](std::uint64_t service) {
        client.Call(source, "SetSource", 1, CallTree().In(std::int32_t{0}).In(service).Text(""));
    };
    EXPECT_FALSE(exist());
    tune(kAirService);
    EXPECT_TRUE(exist());
    EXPECT_TRUE(tv.State("/pipelines/1:0/events").contains("captions"));
    tune(kOtherAirService);
    EXPECT_FALSE(exist());
    EXPECT_EQ(tv.Set("captions", {"on"}), "");
    EXPECT_TRUE(exist());
    EXPECT_EQ(tv.State("/pipelines/1:0/captions"), true);
    tune(kAirService);
    EXPECT_EQ(tv.Set("captions", {"off"}), "");
    EXPECT_FALSE(exist());
    EXPECT_EQ(tv.Set("captions", {"service"}), "");
    EXPECT_TRUE(exist());
    // Nothing comes in without a signal.
    EXPECT_EQ(tv.Set("tuner", {"air", "off"}), "");
    EXPECT_FALSE(exist());
}

TEST(Inputs, RefuseWhatMakesNoSense) {
    TestTv tv;
    EXPECT_NE(tv.Set("tuner", {"air"}), "");
    EXPECT_NE(tv.Set("tuner", {"air", "maybe"}), "");
    EXPECT_NE(tv.Set("tuner", {"water", "off"}), "");
    EXPECT_NE(tv.Set("tuner", {"air/", "off"}), "");
    EXPECT_NE(tv.Set("tuner", {"air/-5", "off"}), "");
    EXPECT_NE(tv.Set("tuner", {"air/5x", "off"}), "");
    EXPECT_NE(tv.Set("captions", {}), "");
    EXPECT_NE(tv.Set("captions", {"perhaps"}), "");
    EXPECT_NE(tv.Set("hdmi", {"hdmi9", "plugged"}), "");
    EXPECT_NE(tv.Set("hdmi", {"0", "plugged"}), "");
    EXPECT_NE(tv.Set("hdmi", {"hdmi1", "on"}), "");
    EXPECT_NE(tv.Set("preparation-limit", {"-1"}), "");
    EXPECT_NE(tv.Set("zoom-limit", {"65"}), "");
    EXPECT_EQ(tv.State("/inputs/cut"), nlohmann::json::array());
}

TEST(Pipelines, ComeAndGoWithTheirSessionsAndSettings) {
    TestTv tv;
    TestClient client(tv);
    EXPECT_EQ(tv.State("/pipelines").size(), 1u); // the main one
    const auto session = client.Open("IAVControl", 7, 65535);
    EXPECT_TRUE(tv.State("/pipelines").contains("7:65535"));
    client.Close(session);
    EXPECT_FALSE(tv.State("/pipelines").contains("7:65535"));
    const auto main = client.Open("IAVControl");
    client.Close(main);
    EXPECT_TRUE(tv.State("/pipelines").contains("1:0"));
}

TEST(Pipelines, AreLimitedInNumber) {
    TestTv tv;
    TestClient client(tv);
    for (std::uint16_t screen = 1; screen < 1024; ++screen)
        EXPECT_NE(client.Open("IAVControl", 1, screen), 0u);
    EXPECT_EQ(client.Open("IAVControl", 1, 1024), 0u);
    EXPECT_TRUE(tv.Logged("norvex", "pipeline 1:1024 refused"));
    EXPECT_NE(client.Open("IAVControl", 1, 0), 0u);
}

TEST(Pipelines, AreAsNewAfterAReset) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("IAVControl");
    client.Call(session, "MuteVideo", 1, CallTree().In(std::int32_t{1}));
    client.Call(session, "RestartVideoDecoder", 0);
    tv.Set("tuner", {"air", "off"});
    tv.Set("captions", {"on"});
    tv.Set("hdmi", {"hdmi3", "unplugged"});
    tv.Set("preparation-limit", {"7"});
    tv.Set("zoom-limit", {"0"});
    tv.context.Reset();
    TestTv fresh;
    for (const char* path : {"/pipelines/1:0/videoMute", "/pipelines/1:0/decoderRestarts",
                             "/pipelines/1:0/events", "/inputs", "/preparation", "/zoom"})
        EXPECT_EQ(tv.State(path), fresh.State(path)) << path;
    // Sessions stay open.
    EXPECT_EQ(tv.State("/pipelines/1:0/sessions"), 1);
    EXPECT_EQ(client.Call(session, "MuteVideo", 1, CallTree().In(std::int32_t{1})).Status(), kDone);
}

} // namespace
