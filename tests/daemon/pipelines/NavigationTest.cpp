#include <gtest/gtest.h>

#include "TestTv.h"

namespace {

using namespace interfaces;
using sim::TvMode;

// The navigation of the main pipeline.
class NavigationTest : public testing::Test {
protected:
    // The id, or nothing when there is none.
    std::optional<std::uint64_t> GetLatest(ServiceNavigationMethod method, std::int32_t antenna,
                                           std::int32_t serviceMode = 0) {
        const Reply reply = client.Call(method, Out{kInvalidService}, TvMode{antenna, serviceMode});
        EXPECT_EQ(reply.Status() > 0, reply.Get<std::uint64_t>(1).has_value());
        return reply.Get<std::uint64_t>(1);
    }
    TvMode GetTvMode() {
        const Reply reply = client.Call(ServiceNavigationMethod::GetTvMode, OutObject{});
        EXPECT_EQ(reply.Status(), kDone);
        wire::NodeCursor cursor(*reply.Find(1));
        wire::Node node;
        TvMode mode{-5, -5};
        EXPECT_TRUE(cursor.Next(node) && node.Get(mode.antenna));
        EXPECT_TRUE(cursor.Next(node) && node.Get(mode.serviceMode));
        return mode;
    }

    TestTv tv;
    TestClient client{tv};
};

TEST_F(NavigationTest, GivesBackTheTvModeThatWasSet) {
    EXPECT_EQ(GetTvMode(), (TvMode{0, 0}));
    EXPECT_EQ(client.SetTvMode({2, 1}), kDone);
    EXPECT_EQ(GetTvMode(), (TvMode{2, 1}));
    EXPECT_EQ(tv.MainState("tuner/at"), "satellite");
    // -1 means the current value.
    EXPECT_EQ(client.SetTvMode({-1, 0}), kDone);
    EXPECT_EQ(GetTvMode(), (TvMode{2, 0}));
    EXPECT_EQ(client.SetTvMode({1, -1}), kDone);
    EXPECT_EQ(GetTvMode(), (TvMode{1, 0}));
    for (const std::int32_t antenna : {3, -2, INT32_MAX}) {
        EXPECT_LT(client.SetTvMode({antenna, 0}), 0);
        EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetTvMode refused: unknown antenna"));
    }
    EXPECT_LT(client.SetTvMode({0, -2}), 0);
    EXPECT_EQ(GetTvMode(), (TvMode{1, 0}));
}

TEST_F(NavigationTest, RemembersTheServicesOf64TvModes) {
    for (std::int32_t mode = 0; mode < 64; ++mode)
        EXPECT_EQ(client.SetTvMode({0, mode}, kAirService), kDone);
    EXPECT_EQ(tv.MainState("latest").size(), 64u);
    EXPECT_FALSE(tv.Logged("tvtunerinfosrc", "forgets"));
    for (const std::int32_t mode : {1000, 2000}) {
        EXPECT_EQ(client.SetTvMode({0, mode}, kAirService), kDone);
        EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "forgets the latest services of antenna air, service mode"));
        EXPECT_EQ(GetLatest(ServiceNavigationMethod::GetLatestServiceId, 0, mode), kAirService);
    }
    EXPECT_EQ(tv.MainState("latest").size(), 64u);
    EXPECT_EQ(GetLatest(ServiceNavigationMethod::GetLatestServiceId, 0, 0), kAirService);
}

TEST_F(NavigationTest, SetsAModeWithAServiceOfItsAntenna) {
    EXPECT_EQ(client.SetTvMode({1, 0}, kCableService), kDone);
    EXPECT_EQ(tv.MainState("tvMode/antenna"), 1);
    EXPECT_EQ(tv.MainState("service"), "0x11");
    EXPECT_EQ(tv.MainState("tuner/at"), "cable/330000");
    EXPECT_LT(client.SetTvMode({1, 0}, kAirService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "belongs to antenna air, not cable"));
    EXPECT_LT(client.SetTvMode({0, 0}, kInvalidService), 0);
    EXPECT_LT(client.SetTvMode({7, 0}, kAirService), 0);
    EXPECT_EQ(tv.MainState("tvMode/antenna"), 1);
    EXPECT_EQ(tv.MainState("service"), "0x11");
}

TEST_F(NavigationTest, SetsServicesOfItsAntennaOnly) {
    EXPECT_EQ(client.SetService(kOtherAirService), kDone);
    EXPECT_EQ(tv.MainState("service"), "0x8000000000000007");
    EXPECT_LT(client.SetService(kInvalidService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetService refused: the invalid service"));
    EXPECT_LT(client.SetService(kCableService), 0);
    EXPECT_LT(client.SetService(0x999), 0);
    EXPECT_EQ(tv.MainState("service"), "0x8000000000000007");
}

TEST_F(NavigationTest, EachMediaElementOfAServiceHasALine) {
    for (const char* tag : {"tvtunerinfosrc", "tvdemuxer", "tvaudiodec", "tvdrmsink"}) {
        client.SetService(kAirService);
        EXPECT_TRUE(tv.Logged(tag, "service ")) << tag;
    }
}

TEST_F(NavigationTest, ShowsAServiceWithTheTuner) {
    client.SetSource(13);
    client.SetService(kAirService);
    EXPECT_EQ(tv.MainState("source"), 0);
    EXPECT_EQ(tv.MainState("receiving"), true);
}

TEST_F(NavigationTest, ReturnsToTheServiceShownLastUnderAMode) {
    client.SetService(kAirService);
    client.SetTvMode({1, 0}, kCableService);
    EXPECT_EQ(client.SetTvMode({0, 0}), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    // Nothing has been shown there.
    EXPECT_EQ(client.SetTvMode({2, 0}), kDone);
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_EQ(tv.MainState("receiving"), false);
    EXPECT_EQ(client.SetTvMode({1, 0}), kDone);
    EXPECT_EQ(tv.MainState("service"), "0x11");
}

TEST_F(NavigationTest, KnowsTheLatestServiceOfEachKind) {
    constexpr auto kLatest = ServiceNavigationMethod::GetLatestServiceId;
    constexpr auto kLatestVelda = ServiceNavigationMethod::GetLatestVeldaServiceId;
    EXPECT_FALSE(GetLatest(kLatest, 0));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "GetLatestServiceId refused: the line-up has no broadcast service that was "
                                            "shown with antenna air, service mode 0"));
    client.SetService(kAirService);
    client.SetService(kStreamedService);
    EXPECT_TRUE(tv.Logged("quarle-provider", "streams service 0x22"));
    client.SetTvMode({1, 0}, kCableService);
    EXPECT_EQ(GetLatest(kLatest, 0), kAirService);
    EXPECT_EQ(GetLatest(kLatestVelda, 0), kStreamedService);
    EXPECT_EQ(GetLatest(kLatest, 1), kCableService);
    EXPECT_FALSE(GetLatest(kLatestVelda, 1));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "GetLatestVeldaServiceId refused: the line-up has no streamed service that "
                                            "was shown with antenna cable, service mode 0"));
    EXPECT_FALSE(GetLatest(kLatest, 1, 1));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "antenna cable, service mode 1"));
    EXPECT_FALSE(GetLatest(kLatestVelda, 7));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "GetLatestVeldaServiceId refused: unknown antenna 7"));
}

TEST_F(NavigationTest, ReturnsFromAStreamedServiceToTheBroadcastOneOfTheSameMode) {
    client.SetService(kAirService);
    client.SetService(kStreamedService);
    EXPECT_EQ(client.SetTvMode({-1, -1}), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_EQ(client.SetTvMode({-1, -1}), kDone);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetTvMode changes nothing"));
}

TEST_F(NavigationTest, SwitchesDtvModesOneByOneAndAllAtOnce) {
    const auto set = [&](std::int32_t mode, bool enable) {
        return client.Do(ServiceNavigationMethod::SetDTVMode, mode, enable);
    };
    // "dav" for demultiplexer, audio and video.
    const auto modes = [&] {
        const nlohmann::json shown = tv.MainState("dtvModes");
        const bool demux = shown["demuxOnly"];
        const bool audio = shown["audioOnly"];
        const bool video = shown["videoOnly"];
        EXPECT_EQ(shown["all"], demux && audio && video);
        return std::string(demux ? "d" : "") + (audio ? "a" : "") + (video ? "v" : "");
    };
    const std::tuple<std::int32_t, bool, const char*> kSteps[] = {{0, true, "d"},   {1, true, "da"}, {2, true, "dav"},
                                                                  {1, false, "dv"}, {0, false, "v"}, {2, false, ""},
                                                                  {3, true, "dav"}, {3, false, ""}};
    for (const auto& [mode, enable, expected] : kSteps) {
        EXPECT_EQ(set(mode, enable), kDone);
        EXPECT_EQ(modes(), expected);
    }
    EXPECT_LT(set(4, true), 0);
    EXPECT_TRUE(tv.Logged("tvdemuxer", "SetDTVMode refused: unknown mode 4"));
    EXPECT_LT(set(-1, true), 0);
    EXPECT_EQ(modes(), "");
}

} // namespace
