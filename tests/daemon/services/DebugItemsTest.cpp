#include <functional>

#include <gtest/gtest.h>

#include "DebugPrintControl.h"
#include "LineUpTv.h"

namespace {

using namespace interfaces;
using sim::Rect;

const char kTwoServices[] = "transponder air 474000\n"
                            "service 0x1 1 \"One\" captions\n"
                            "transponder air 482000\n"
                            "service 0x2 2 \"Two\"\n";

constexpr Rect kPart{0, 0, 960, 540};
constexpr Rect kWhole{0, 0, 1920, 1080};

// What the switches of the TV's debug menu do, and a client that has its dialogue open.
class DebugItemsTest : public testing::Test {
protected:
    DebugItemsTest() {
        tv.context.Register<sim::DebugPrintControl>(tv.context, 0u);
        Exchange(DebugPrintControlMethod::Start, CallTree(OutObject{}));
        EXPECT_EQ(client.Subscribe(81), kDone);
    }

    std::string Type(const std::string& word) {
        return Exchange(DebugPrintControlMethod::Execute, CallTree(word, OutObject{}));
    }
    std::int32_t MuteVideo(std::int32_t value) { return client.Do(AVControlMethod::MuteVideo, value); }

    LineUpTv tv{kTwoServices};
    LineUpClient client{tv};

private:
    // The text of the reply.
    std::string Exchange(DebugPrintControlMethod method, const CallTree& arguments) {
        const Reply reply = client.Exchange(kTable<DebugPrintControlMethod>.name, 0, GetMethodName(method),
                                            static_cast<std::int16_t>(method), arguments);
        std::string_view text;
        const auto node = reply.Find(method == DebugPrintControlMethod::Start ? 1 : 2);
        EXPECT_TRUE(node && wire::GetText(*node, text));
        return std::string(text);
    }
};

TEST_F(DebugItemsTest, EachItemSwitchesTheLinesOfItsPart) {
    const auto watch = [&] {
        client.SetService(1);
        client.SetService(2);
    };
    const auto zoom = [&] {
        client.Call(ZoomControlMethod::CreateZoomWindow, Out<std::int32_t>{0}, kPart, kPart, kWhole);
    };
    const auto scan = [&] {
        tv.Set("scan-pace", {"0"});
        client.Do(ScanControlMethod::StartTuneAround, Services{1, 2}, "");
        tv.WaitUntil([&] { return tv.State("/scan/running").is_null(); });
    };
    const auto prepare = [&] {
        client.Do(PipelineUtilityMethod::RegisterForStateChange, 0, "app", 0);
        client.SetService(1);
        client.Do(PipelineUtilityMethod::UnregisterFromStateChange, 0, "app");
    };
    const struct {
        int item;
        const char* tag;
        const char* line;
        std::function<void()> cause;
    } kItems[] = {
        {101, "tvtunerinfosrc", "Tuner lock: pipeline 1:0: locked at air/474000", watch},
        {102, "tvdemuxer", "Section filter: pipeline 1:0: filters of service 0x1 closed", watch},
        {103, "tvtunerinfosrc", "source 0 to 0, service 0x1 to 0x2", watch},
        {104, "tvtunerinfosrc", "Service list: GetServiceList: antenna 0, profile 0, 0 conditions: 2 services",
         [&] { client.GetServiceList({}); }},
        {105, "norvex", "Signal queue: signal 81, number ", watch},
        {106, "tvvideodec", "Video decoder: pipeline 1:0: decoding, mute 0, video only off, 0 restarts", watch},
        {107, "tvaudiodec", "Audio decoder: pipeline 1:0: decoding, mute 0, audio only off", watch},
        {108, "tvdemuxer", "Captions: pipeline 1:0: captions received", watch},
        {109, "tvfpaparser", "Zoom windows: window 1: 0,0 960x540 of the picture at 0,0 960x540", zoom},
        {110, "tvvideodec", "Crop video: pipeline 1:0: replaces ",
         [&] { client.Do(VideoControlMethod::SetCropVideo, kPart, kWhole); }},
        {111, "tvtunerinfosrc", "Scan progress: tune around: 1 of 2, 1 done", scan},
        {112, "norvex", "\"app\" of client ", prepare},
        {113, "extvideosrc", "HDMI input: pipeline 1:0: source 13 is plugged", [&] { client.SetSource(13); }},
        {114, "norvex", "of com.holvi.IAVControl, client ", [&] { client.Close(client.Open<AVControlMethod>()); }},
        {115, "norvex", "Database access: INSERT ", [&] { client.SetBootupService(1); }},
        {116, "norvex", "Memory use: ", watch},
    };
    Type("items");
    for (const auto& [item, tag, line, cause] : kItems) {
        SCOPED_TRACE(item);
        Type(std::to_string(item)); // on
        tv.Logged("", "");
        cause();
        EXPECT_TRUE(tv.Logged(tag, line));
        EXPECT_NE(Type(std::to_string(item)).find(line), std::string::npos); // off
        tv.Logged("", "");
        cause();
        EXPECT_FALSE(tv.Logged(tag, line));
        Type("items");
    }
}

TEST_F(DebugItemsTest, ALineIsShownOnceAndManyAreCounted) {
    Type("items");
    Type("103");
    for (int count = 0; count < 25; ++count)
        client.SetService(1);
    const std::string screen = Type("103");
    EXPECT_NE(screen.find("\n... and 5 more lines\n\nChannel change is OFF\n"), std::string::npos);
    EXPECT_EQ(Type("items").find("Channel change: "), std::string::npos);
}

TEST_F(DebugItemsTest, AStoppedTagIsShownInTheDialogueOnly) {
    Type("items");
    Type("103");
    tv.log.SetTag("tvtunerinfosrc", false);
    client.SetService(1);
    EXPECT_FALSE(tv.Logged("tvtunerinfosrc", "Channel change: "));
    EXPECT_NE(Type("items").find("\nChannel change: pipeline 1:0: "), std::string::npos);
}

TEST_F(DebugItemsTest, TraceWritesEachCall) {
    Type("modes");
    Type("0");
    MuteVideo(1);
    EXPECT_TRUE(tv.Logged("norvex", " IAVControl.MuteVideo(value=1) = status 1"));
}

TEST_F(DebugItemsTest, TimingWritesHowLongEachCallTook) {
    Type("modes");
    Type("1");
    MuteVideo(1);
    EXPECT_TRUE(tv.Logged("norvex", "timing: com.holvi.IAVControl.MuteVideo took "));
}

TEST_F(DebugItemsTest, FramesCountsTheFramesOfAPipeline) {
    Type("modes");
    Type("2");
    client.SetService(1);
    client.SetService(2);
    EXPECT_TRUE(tv.Logged("tvvideosink", "frames: pipeline 1:0: "));
}

TEST_F(DebugItemsTest, DryRunExecutesNothingThatWouldChangeTheTv) {
    Type("modes");
    Type("3");
    EXPECT_EQ(MuteVideo(1), kDone);
    EXPECT_TRUE(tv.Logged("norvex", "dry-run: com.holvi.IAVControl.MuteVideo is not executed"));
    EXPECT_EQ(tv.MainState("videoMute"), 0);
    EXPECT_EQ(client.SetService(1), kDone);
    EXPECT_TRUE(tv.MainState("service").is_null());
    // Reading goes on, and so do subscriptions.
    EXPECT_EQ(client.GetServiceList({}).Status(), kDone);
    EXPECT_TRUE(client.GetServiceList({}).Find(2));
    EXPECT_EQ(client.Subscribe(193), kDone);
    EXPECT_EQ(client.Unsubscribe(193), kDone);
    EXPECT_LT(client.Unsubscribe(193), 0);
    Type("3");
    EXPECT_EQ(MuteVideo(1), kDone);
    EXPECT_EQ(tv.MainState("videoMute"), 1);
}

TEST_F(DebugItemsTest, QoSIsSeenInThePipelines) {
    Type("qos");
    Type("on");
    EXPECT_TRUE(tv.Logged("tvvideosink", "QoS on"));
    EXPECT_EQ(tv.MainState("qos"), true);
    client.Call(PipelineUtilityMethod::GetCurrentTPMSStatus, OutObject{});
    const nlohmann::json call = tv.context.journal.Describe(tv.context.journal.GetEnd() - 1);
    EXPECT_EQ(call["results"][1]["value"]["entries"].back()["text"], "QoS on");
    Type("off");
    EXPECT_EQ(tv.MainState("qos"), false);
}

} // namespace
