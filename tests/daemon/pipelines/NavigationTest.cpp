#include <gtest/gtest.h>

#include "TestTv.h"

namespace {

constexpr std::uint64_t kInvalid = ~std::uint64_t{0};

// The navigation of the main pipeline.
class NavigationTest : public testing::Test {
protected:
    std::int32_t SetTvMode(std::int32_t antenna, std::int32_t serviceMode) {
        return client
            .Call(session, "SetTvMode", 2, CallTree().TvMode(antenna, serviceMode).Text(""))
            .Status();
    }
    std::int32_t SetTvMode(std::int32_t antenna, std::int32_t serviceMode, std::uint64_t service) {
        return client
            .Call(session, "SetTvMode", 3,
                  CallTree().TvMode(antenna, serviceMode).In(service).Text(""))
            .Status();
    }
    std::int32_t SetService(std::uint64_t service) {
        return client
            .Call(session, "SetService", 5,
                  CallTree().In(service).In(std::int32_t{0}).In(std::int32_t{0}).Text(""))
            .Status();
    }
    std::int32_t SetDTVMode(std::int32_t mode, bool enable) {
        return client
            .Call(session, "SetDTVMode", 4,
                  CallTree().In(mode).In(static_cast<std::uint8_t>(enable)))
            .Status();
    }
    // The id, or nothing when there is none.
    std::optional<std::uint64_t> GetLatest(const char* method, std::int16_t id,
                                           std::int32_t antenna) {
        const Reply reply =
            client.Call(session, method, id, CallTree().Out(kInvalid).TvMode(antenna, 0));
        EXPECT_EQ(reply.Status() > 0, reply.Get<std::uint64_t>(1).has_value());
        return reply.Get<std::uint64_t>(1);
    }
    nlohmann::json State(const std::string& name) { return tv.State("/pipelines/1:0/" + name); }

    TestTv tv;
    TestClient client{tv};
    std::uint32_t session = client.Open("IServiceNavigation");
};

TEST_F(NavigationTest, GivesBackTheTvModeThatWasSet) {
    const auto get = [&] {
        const Reply reply = client.Call(session, "GetTvMode", 0, CallTree().OutObject());
        EXPECT_EQ(reply.Status(), kDone);
        wire::NodeCursor cursor(*reply.Find(1));
        wire::Node node;
        std::int32_t antenna = -5;
        std::int32_t serviceMode = -5;
        EXPECT_TRUE(cursor.Next(node) && node.Get(antenna));
        EXPECT_TRUE(cursor.Next(node) && node.Get(serviceMode));
        return std::pair(antenna, serviceMode);
    };
    EXPECT_EQ(get(), std::pair(0, 0));
    EXPECT_EQ(SetTvMode(2, 1), kDone);
    EXPECT_EQ(get(), std::pair(2, 1));
    EXPECT_EQ(State("tuner/at"), "satellite");
    // -1 is what it has.
    EXPECT_EQ(SetTvMode(-1, 0), kDone);
    EXPECT_EQ(get(), std::pair(2, 0));
    EXPECT_EQ(SetTvMode(1, -1), kDone);
    EXPECT_EQ(get(), std::pair(1, 0));
    for (const std::int32_t antenna : {3, -2, INT32_MAX}) {
        EXPECT_LT(SetTvMode(antenna, 0), 0);
        EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetTvMode refused: no antenna"));
    }
    EXPECT_LT(SetTvMode(0, -2), 0);
    EXPECT_EQ(get(), std::pair(1, 0));
}

TEST_F(NavigationTest, SetsAModeWithAServiceOfItsAntenna) {
    EXPECT_EQ(SetTvMode(1, 0, kCableService), kDone);
    EXPECT_EQ(State("tvMode/antenna"), 1);
    EXPECT_EQ(State("service"), "0x11");
    EXPECT_EQ(State("tuner/at"), "cable/330000");
    EXPECT_LT(SetTvMode(1, 0, kAirService), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "is of antenna air, not cable"));
    EXPECT_LT(SetTvMode(0, 0, kInvalid), 0);
    EXPECT_LT(SetTvMode(7, 0, kAirService), 0);
    EXPECT_EQ(State("tvMode/antenna"), 1);
    EXPECT_EQ(State("service"), "0x11");
}

TEST_F(NavigationTest, SetsServicesOfItsAntennaOnly) {
    EXPECT_EQ(SetService(kOtherAirService), kDone);
    EXPECT_EQ(State("service"), "0x8000000000000007");
    EXPECT_LT(SetService(kInvalid), 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetService refused: the invalid service"));
    EXPECT_LT(SetService(kCableService), 0);
    EXPECT_LT(SetService(0x999), 0);
    EXPECT_EQ(State("service"), "0x8000000000000007");
}

TEST_F(NavigationTest, ShowsAServiceWithTheTuner) {
    const auto source = client.Open("ISourceControl");
    client.Call(source, "SetSource", 0, CallTree().In(std::int32_t{13}).Text(""));
    SetService(kAirService);
    EXPECT_EQ(State("source"), 0);
    EXPECT_EQ(State("receiving"), true);
}

TEST_F(NavigationTest, ReturnsToTheServiceShownLastUnderAMode) {
    SetService(kAirService);
    SetTvMode(1, 0, kCableService);
    EXPECT_EQ(SetTvMode(0, 0), kDone);
    EXPECT_EQ(State("service"), "0xfa0000000002002d");
    // Nothing has been shown there.
    EXPECT_EQ(SetTvMode(2, 0), kDone);
    EXPECT_TRUE(State("service").is_null());
    EXPECT_EQ(State("receiving"), false);
    EXPECT_EQ(SetTvMode(1, 0), kDone);
    EXPECT_EQ(State("service"), "0x11");
}

TEST_F(NavigationTest, KnowsTheLatestServiceOfEachKind) {
    EXPECT_FALSE(GetLatest("GetLatestServiceId", 8, 0));
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "nothing has been shown of antenna air"));
    SetService(kAirService);
    SetService(kStreamedService);
    EXPECT_TRUE(tv.Logged("quarle-provider", "streams service 0x22"));
    SetTvMode(1, 0, kCableService);
    EXPECT_EQ(GetLatest("GetLatestServiceId", 8, 0), kAirService);
    EXPECT_EQ(GetLatest("GetLatestVeldaServiceId", 7, 0), kStreamedService);
    EXPECT_EQ(GetLatest("GetLatestServiceId", 8, 1), kCableService);
    EXPECT_FALSE(GetLatest("GetLatestVeldaServiceId", 7, 1));
}

TEST_F(NavigationTest, SwitchesDtvModesOneByOneAndAllAtOnce) {
    EXPECT_EQ(SetDTVMode(0, true), kDone);
    EXPECT_EQ(State("dtvModes/demuxOnly"), true);
    EXPECT_EQ(State("dtvModes/audioOnly"), false);
    EXPECT_EQ(SetDTVMode(1, true), kDone);
    EXPECT_EQ(State("dtvModes/all"), false);
    EXPECT_EQ(SetDTVMode(2, true), kDone);
    EXPECT_EQ(State("dtvModes/all"), true);
    EXPECT_EQ(SetDTVMode(1, false), kDone);
    EXPECT_EQ(State("dtvModes/videoOnly"), true);
    EXPECT_EQ(State("dtvModes/all"), false);
    EXPECT_EQ(SetDTVMode(3, true), kDone);
    EXPECT_EQ(State("dtvModes/audioOnly"), true);
    EXPECT_EQ(SetDTVMode(3, false), kDone);
    EXPECT_EQ(State("dtvModes/demuxOnly"), false);
    EXPECT_LT(SetDTVMode(4, true), 0);
    EXPECT_TRUE(tv.Logged("tvdemuxer", "SetDTVMode refused: no mode 4"));
    EXPECT_LT(SetDTVMode(-1, true), 0);
}

} // namespace
