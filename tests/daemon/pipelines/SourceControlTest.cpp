#include <gtest/gtest.h>

#include "Pipelines.h"
#include "TestTv.h"

namespace {

using namespace interfaces;

// A source control of the main pipeline.
class SourceControlTest : public testing::Test {
protected:
    std::int32_t Preview(std::int32_t source) { return client.Do(SourceControlMethod::SetPreviewSource, source, ""); }
    std::int32_t Preview(std::int32_t source, std::uint64_t service) {
        return client.Do(SourceControlMethod::SetPreviewSource_Service, source, service, "");
    }
    std::int32_t StartAnalysis(std::int32_t source) {
        return client.Do(SourceControlMethod::StartHDMIAnalysis, source);
    }
    std::int32_t StopAnalysis(std::int32_t source) { return client.Do(SourceControlMethod::StopHDMIAnalysis, source); }

    TestTv tv;
    TestClient client{tv};
};

TEST_F(SourceControlTest, SwitchesToEverySourceThereIs) {
    for (std::int32_t source = 47; source >= 0; --source) {
        EXPECT_EQ(client.SetSource(source), kDone);
        EXPECT_EQ(tv.MainState("source"), source);
        EXPECT_TRUE(tv.Logged("extvideosrc", "from source " + std::to_string(source)));
    }
}

TEST_F(SourceControlTest, RefusesAnUnknownSource) {
    client.SetSource(13);
    for (const std::int32_t source : {-1, 48, INT32_MAX, INT32_MIN}) {
        EXPECT_LT(client.SetSource(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "SetSource refused: unknown source"));
        EXPECT_LT(client.SetSource(source, kAirService), 0);
        EXPECT_LT(Preview(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "SetPreviewSource refused: unknown source"));
        EXPECT_LT(Preview(source, kAirService), 0);
    }
    EXPECT_EQ(tv.MainState("source"), 13);
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_TRUE(tv.MainState("preview").is_null());
}

TEST_F(SourceControlTest, OnlyTheTunerHasServices) {
    for (const std::int32_t source : {7, 13, 47}) {
        EXPECT_EQ(client.SetSource(source, kAirService), -3);
        EXPECT_TRUE(
            tv.Logged("extvideosrc", "SetSource refused: source " + std::to_string(source) + " has no services"));
        EXPECT_EQ(Preview(source, kAirService), -3);
        EXPECT_TRUE(tv.Logged("extvideosrc", "SetPreviewSource refused: source " + std::to_string(source)));
    }
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_TRUE(tv.MainState("preview").is_null());
}

TEST_F(SourceControlTest, TunesAService) {
    client.SetSource(13);
    EXPECT_EQ(client.SetSource(0, kAirService), kDone);
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_EQ(tv.MainState("tuner/at"), "air/474000");
    EXPECT_EQ(tv.MainState("receiving"), true);
    EXPECT_TRUE(tv.MainState("events").contains("started"));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "tuned to service 0xfa0000000002002d"));
}

TEST_F(SourceControlTest, RefusesServicesThatItCannotShow) {
    client.SetSource(0, kAirService);
    EXPECT_LT(client.SetSource(0, kInvalidService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetSource refused: the invalid service"));
    EXPECT_LT(client.SetSource(0, 0x999), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "unknown service 0x999"));
    EXPECT_LT(client.SetSource(0, kCableService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "belongs to antenna cable, not air"));
    EXPECT_LT(Preview(0, kInvalidService), 0);
    EXPECT_LT(Preview(0, kCableService), 0);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_TRUE(tv.MainState("preview").is_null());
}

TEST_F(SourceControlTest, KeepsTheServiceWhileAnotherSourceIsShown) {
    client.SetSource(0, kAirService);
    client.SetSource(7);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_EQ(tv.MainState("receiving"), false);
    client.SetSource(0);
    EXPECT_EQ(tv.MainState("receiving"), true);
}

TEST_F(SourceControlTest, PreviewsLeaveThePictureAlone) {
    EXPECT_EQ(Preview(13), kDone);
    EXPECT_EQ(tv.MainState("preview/source"), 13);
    EXPECT_TRUE(tv.MainState("preview/service").is_null());
    EXPECT_EQ(Preview(0, kOtherAirService), kDone);
    EXPECT_EQ(tv.MainState("preview/service"), "0x8000000000000007");
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_TRUE(tv.MainState("service").is_null());
}

TEST_F(SourceControlTest, ShowsInWhichOrderItWasPrepared) {
    EXPECT_EQ(client.Do(SourceControlMethod::PreSetSourceA), kDone);
    EXPECT_EQ(client.Do(SourceControlMethod::PreSetSourceB), kDone);
    EXPECT_EQ(client.Do(SourceControlMethod::PreSetSourceC), kDone);
    EXPECT_TRUE(tv.Logged("extvideosrc", "prepared for a source, C"));
    EXPECT_EQ(tv.MainState("preSetSource/next"), "ABC");
    EXPECT_EQ(tv.MainState("preSetSource/last"), "");
    client.SetSource(48); // refused: nothing is used up
    EXPECT_EQ(tv.MainState("preSetSource/next"), "ABC");
    client.SetSource(13);
    EXPECT_EQ(tv.MainState("preSetSource/next"), "");
    EXPECT_EQ(tv.MainState("preSetSource/last"), "ABC");
    for (int count = 0; count < 20; ++count)
        client.Do(SourceControlMethod::PreSetSourceA);
    EXPECT_EQ(tv.MainState("preSetSource/next"), std::string(16, 'A'));
}

TEST_F(SourceControlTest, AnalysesHdmiInputs) {
    for (const std::int32_t source : {13, 14, 15, 16, 38, 39, 46, 47})
        EXPECT_EQ(StartAnalysis(source), kDone);
    EXPECT_EQ(tv.MainState("hdmiAnalysis"), nlohmann::json({13, 14, 15, 16, 38, 39, 46, 47}));
    EXPECT_EQ(StartAnalysis(13), kDone); // already running
    EXPECT_TRUE(tv.Logged("extvideosrc", "analysis of source 13 already running"));
    EXPECT_EQ(StopAnalysis(13), kDone);
    EXPECT_EQ(tv.MainState("hdmiAnalysis"), nlohmann::json({14, 15, 16, 38, 39, 46, 47}));
    EXPECT_LT(StopAnalysis(13), 0);
    EXPECT_TRUE(tv.Logged("extvideosrc", "source 13 is not analysed"));
}

TEST_F(SourceControlTest, AnalysesOnlyWhatIsPluggedIntoAnHdmiInput) {
    for (const std::int32_t source : {0, 7, 12, 17, 37, 40, 45, 48, -1}) {
        EXPECT_LT(StartAnalysis(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "is not an HDMI input"));
    }
    EXPECT_EQ(StartAnalysis(14), kDone);
    EXPECT_EQ(tv.Set("hdmi", {"hdmi2", "unplugged"}), "");
    EXPECT_EQ(tv.MainState("hdmiAnalysis"), nlohmann::json::array()); // it ends
    EXPECT_LT(StartAnalysis(14), 0);
    EXPECT_TRUE(tv.Logged("extvideosrc", "source 14 has nothing plugged in"));
    EXPECT_EQ(tv.State("/inputs/hdmi/14"), "unplugged");
    // It can still be shown.
    EXPECT_EQ(client.SetSource(14), kDone);
    EXPECT_EQ(tv.Set("hdmi", {"14", "plugged"}), "");
    EXPECT_EQ(StartAnalysis(14), kDone);
}

TEST_F(SourceControlTest, AnAnalysisEndsWithItsClient) {
    TestClient other(tv);
    EXPECT_EQ(other.Do(SourceControlMethod::StartHDMIAnalysis, 13), kDone);
    EXPECT_EQ(other.Do(SourceControlMethod::StartHDMIAnalysis, 14), kDone);
    EXPECT_EQ(StartAnalysis(14), kDone);
    EXPECT_LT(StopAnalysis(13), 0);
    EXPECT_TRUE(tv.Logged("extvideosrc", "StopHDMIAnalysis refused: source 13 is not analysed by client 1"));
    EXPECT_EQ(tv.MainState("hdmiAnalysis"), nlohmann::json({13, 14}));
    other.Die();
    EXPECT_EQ(tv.MainState("hdmiAnalysis"), nlohmann::json({14}));
    EXPECT_TRUE(tv.Logged("extvideosrc", "analysis ended, source 13 has lost its client"));
}

TEST_F(SourceControlTest, APipelineGoesWithTheClientThatAnalysedWithIt) {
    TestClient other(tv, {101, 0});
    EXPECT_EQ(other.Do(SourceControlMethod::StartHDMIAnalysis, 13), kDone);
    EXPECT_EQ(tv.State("/pipelines").size(), 2u);
    other.Die();
    EXPECT_EQ(tv.State("/pipelines").size(), 1u);
}

TEST(LineUpChange, ForgetsServicesThatAreGone) {
    TestTv tv;
    TestClient client(tv);
    client.SetService(kAirService);
    client.SetService(kStreamedService);
    EXPECT_EQ(client.Do(SourceControlMethod::SetPreviewSource_Service, 0, kOtherAirService, ""), kDone);
    tv.lineUp.services.erase(kAirService);
    tv.components.pipelines.LineUpChanged();
    EXPECT_TRUE(tv.MainState("latest/0/broadcast").is_null());
    EXPECT_EQ(tv.MainState("latest/0/streamed"), "0x22");
    EXPECT_EQ(tv.MainState("preview/service"), "0x8000000000000007");
    // The streamed one is now broadcast.
    tv.lineUp.services = {{kStreamedService, {.antenna = 0, .frequency = 474000}}};
    tv.components.pipelines.LineUpChanged();
    EXPECT_EQ(tv.MainState("latest/0/broadcast"), "0x22");
    EXPECT_TRUE(tv.MainState("latest/0/streamed").is_null());
    EXPECT_TRUE(tv.MainState("preview/service").is_null());
    EXPECT_EQ(tv.MainState("preview/source"), 0);
    // It moves to another antenna.
    tv.lineUp.services.at(kStreamedService).antenna = 1;
    tv.components.pipelines.LineUpChanged();
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_TRUE(tv.MainState("latest").empty());
}

TEST(LineUpChange, DropsServicesThatAreGone) {
    TestTv tv;
    TestClient client(tv);
    client.SetSource(0, kAirService);
    tv.lineUp.services.at(kAirService).frequency = 490000;
    tv.components.pipelines.LineUpChanged();
    EXPECT_EQ(tv.MainState("tuner/at"), "air/490000");
    tv.lineUp.services.clear();
    tv.components.pipelines.LineUpChanged();
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_EQ(tv.MainState("receiving"), false);
    EXPECT_EQ(tv.MainState("tuner/at"), "air");
}

} // namespace
