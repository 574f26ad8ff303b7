#include <gtest/gtest.h>

#include "Pipelines.h"
#include "TestTv.h"

namespace {

constexpr std::uint64_t kInvalid = ~std::uint64_t{0};

// A source control of the main pipeline.
class SourceControlTest : public testing::Test {
protected:
    std::int32_t SetSource(std::int32_t source) {
        return client.Call(session, "SetSource", 0, CallTree().In(source).Text("")).Status();
    }
    std::int32_t SetSource(std::int32_t source, std::uint64_t service) {
        return client.Call(session, "SetSource", 1, CallTree().In(source).In(service).Text(""))
            .Status();
    }
    std::int32_t Preview(std::int32_t source) {
        return client.Call(session, "SetPreviewSource", 7, CallTree().In(source).Text("")).Status();
    }
    std::int32_t Preview(std::int32_t source, std::uint64_t service) {
        return client
            .Call(session, "SetPreviewSource", 8, CallTree().In(source).In(service).Text(""))
            .Status();
    }
    std::int32_t StartAnalysis(std::int32_t source) {
        return client.Call(session, "StartHDMIAnalysis", 3, CallTree().In(source)).Status();
    }
    std::int32_t StopAnalysis(std::int32_t source) {
        return client.Call(session, "StopHDMIAnalysis", 4, CallTree().In(source)).Status();
    }
    nlohmann::json State(const std::string& name) { return tv.State("/pipelines/1:0/" + name); }

    TestTv tv;
    TestClient client{tv};
    std::uint32_t session = client.Open("ISourceControl");
};

TEST_F(SourceControlTest, SwitchesToEverySourceThereIs) {
    for (std::int32_t source = 47; source >= 0; --source) {
        EXPECT_EQ(SetSource(source), kDone);
        EXPECT_EQ(State("source"), source);
        EXPECT_TRUE(tv.Logged("extvideosrc", "from source " + std::to_string(source)));
    }
}

TEST_F(SourceControlTest, RefusesAnUnknownSource) {
    SetSource(13);
    for (const std::int32_t source : {-1, 48, INT32_MAX, INT32_MIN}) {
        EXPECT_LT(SetSource(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "SetSource refused: no source"));
        EXPECT_LT(SetSource(source, kAirService), 0);
        EXPECT_LT(Preview(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "SetPreviewSource refused: no source"));
        EXPECT_LT(Preview(source, kAirService), 0);
    }
    EXPECT_EQ(State("source"), 13);
    EXPECT_TRUE(State("service").is_null());
    EXPECT_TRUE(State("preview").is_null());
}

TEST_F(SourceControlTest, TunesAService) {
    SetSource(13);
    EXPECT_EQ(SetSource(0, kAirService), kDone);
    EXPECT_EQ(State("source"), 0);
    EXPECT_EQ(State("service"), "0xfa0000000002002d");
    EXPECT_EQ(State("tuner/at"), "air/474000");
    EXPECT_EQ(State("receiving"), true);
    EXPECT_TRUE(State("events").contains("started"));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "tunes service 0xfa0000000002002d"));
}

TEST_F(SourceControlTest, RefusesServicesThatItCannotShow) {
    SetSource(0, kAirService);
    EXPECT_LT(SetSource(0, kInvalid), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetSource refused: the invalid service"));
    EXPECT_LT(SetSource(0, 0x999), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "no service 0x999"));
    EXPECT_LT(SetSource(0, kCableService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "is of antenna cable, not air"));
    EXPECT_LT(Preview(0, kInvalid), 0);
    EXPECT_LT(Preview(0, kCableService), 0);
    EXPECT_EQ(State("service"), "0xfa0000000002002d");
    EXPECT_TRUE(State("preview").is_null());
}

TEST_F(SourceControlTest, KeepsTheServiceWhileAnotherSourceIsShown) {
    SetSource(0, kAirService);
    SetSource(7);
    EXPECT_EQ(State("service"), "0xfa0000000002002d");
    EXPECT_EQ(State("receiving"), false);
    SetSource(0);
    EXPECT_EQ(State("receiving"), true);
}

TEST_F(SourceControlTest, PreviewsLeaveThePictureAlone) {
    EXPECT_EQ(Preview(13), kDone);
    EXPECT_EQ(State("preview/source"), 13);
    EXPECT_TRUE(State("preview/service").is_null());
    EXPECT_EQ(Preview(0, kOtherAirService), kDone);
    EXPECT_EQ(State("preview/service"), "0x8000000000000007");
    EXPECT_EQ(State("source"), 0);
    EXPECT_TRUE(State("service").is_null());
}

TEST_F(SourceControlTest, ShowsInWhichOrderItWasPrepared) {
    EXPECT_EQ(client.Call(session, "PreSetSourceA", 2).Status(), kDone);
    EXPECT_EQ(client.Call(session, "PreSetSourceB", 6).Status(), kDone);
    EXPECT_EQ(client.Call(session, "PreSetSourceC", 5).Status(), kDone);
    EXPECT_TRUE(tv.Logged("extvideosrc", "prepared for a source, C"));
    EXPECT_EQ(State("preSetSource/next"), "ABC");
    EXPECT_EQ(State("preSetSource/last"), "");
    SetSource(48); // refused: nothing is used up
    EXPECT_EQ(State("preSetSource/next"), "ABC");
    SetSource(13);
    EXPECT_EQ(State("preSetSource/next"), "");
    EXPECT_EQ(State("preSetSource/last"), "ABC");
    for (int count = 0; count < 20; ++count)
        client.Call(session, "PreSetSourceA", 2);
    EXPECT_EQ(State("preSetSource/next"), std::string(16, 'A'));
}

TEST_F(SourceControlTest, AnalysesHdmiInputs) {
    for (const std::int32_t source : {13, 14, 15, 16, 38, 39, 46, 47})
        EXPECT_EQ(StartAnalysis(source), kDone);
    EXPECT_EQ(State("hdmiAnalysis"), nlohmann::json({13, 14, 15, 16, 38, 39, 46, 47}));
    EXPECT_EQ(StartAnalysis(13), kDone); // goes on
    EXPECT_TRUE(tv.Logged("extvideosrc", "analysis of source 13 goes on"));
    EXPECT_EQ(StopAnalysis(13), kDone);
    EXPECT_EQ(State("hdmiAnalysis"), nlohmann::json({14, 15, 16, 38, 39, 46, 47}));
    EXPECT_LT(StopAnalysis(13), 0);
    EXPECT_TRUE(tv.Logged("extvideosrc", "source 13 is not analysed"));
}

TEST_F(SourceControlTest, AnalysesOnlyWhatIsPluggedIntoAnHdmiInput) {
    for (const std::int32_t source : {0, 7, 12, 17, 48, -1}) {
        EXPECT_LT(StartAnalysis(source), 0);
        EXPECT_TRUE(tv.Logged("extvideosrc", "is no HDMI input"));
    }
    EXPECT_EQ(StartAnalysis(14), kDone);
    EXPECT_EQ(tv.Set("hdmi", {"hdmi2", "unplugged"}), "");
    EXPECT_EQ(State("hdmiAnalysis"), nlohmann::json::array()); // it ends
    EXPECT_LT(StartAnalysis(14), 0);
    EXPECT_TRUE(tv.Logged("extvideosrc", "source 14 has nothing plugged in"));
    EXPECT_EQ(tv.State("/inputs/hdmi/14"), "unplugged");
    // To show it is another matter.
    EXPECT_EQ(SetSource(14), kDone);
    EXPECT_EQ(tv.Set("hdmi", {"14", "plugged"}), "");
    EXPECT_EQ(StartAnalysis(14), kDone);
}

TEST_F(SourceControlTest, NumbersItsOperationsInTheOrderThatClientsKnow) {
    // C stands before B; the numbers 5 and 6 with each other's name make no sense.
    const auto fails = [&](const char* method, std::int16_t id) {
        const Reply reply = client.Call(session, method, id);
        return !reply.Find(0).has_value();
    };
    EXPECT_TRUE(fails("PreSetSourceB", 5));
    EXPECT_TRUE(fails("PreSetSourceC", 6));
    EXPECT_EQ(State("preSetSource/next"), "");
}

TEST(LineUpChange, DropsServicesThatAreGone) {
    TestTv tv;
    TestClient client(tv);
    const auto session = client.Open("ISourceControl");
    client.Call(session, "SetSource", 1, CallTree().In(std::int32_t{0}).In(kAirService).Text(""));
    tv.lineUp.services.at(kAirService).frequency = 490000;
    tv.parts.pipelines.LineUpChanged();
    EXPECT_EQ(tv.State("/pipelines/1:0/tuner/at"), "air/490000");
    tv.lineUp.services.clear();
    tv.parts.pipelines.LineUpChanged();
    EXPECT_TRUE(tv.State("/pipelines/1:0/service").is_null());
    EXPECT_EQ(tv.State("/pipelines/1:0/receiving"), false);
    EXPECT_EQ(tv.State("/pipelines/1:0/tuner/at"), "air");
}

} // namespace
