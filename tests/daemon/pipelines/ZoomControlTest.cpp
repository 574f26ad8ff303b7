#include <gtest/gtest.h>

#include "TestTv.h"
#include "ValueJson.h"

namespace {

using namespace interfaces;
using sim::Rect;

const Rect kPart{100, 100, 200, 200};
const Rect kPlace{1500, 50, 400, 300};
const Rect kMain{0, 0, 1920, 1080};

// A client with a zoom control.
class Zoomer : public TestClient {
public:
    using TestClient::TestClient;

    Reply Create(const Rect& source, const Rect& destination, const Rect& main) {
        return Call(ZoomControlMethod::CreateZoomWindow, Out{-1}, source, destination, main);
    }
    std::int32_t Create() { return Create(kPart, kPlace, kMain).Get<std::int32_t>(1).value_or(-1); }
    std::int32_t Delete(const Ids& ids, const Rect& main = kMain) {
        return Do(ZoomControlMethod::DeleteZoomWindow, ids, main);
    }
    std::int32_t Set(const Ids& ids, bool on) { return Do(ZoomControlMethod::SetZoomWindow, ids, on); }
    std::int32_t Mute(const Ids& ids, bool mute) { return Do(ZoomControlMethod::MuteZoomWindow, ids, mute); }
    std::int32_t SetRect(std::int32_t id, const Rect& source, const Rect& destination, const Rect& main) {
        return Do(ZoomControlMethod::SetZoomWindowRect, id, source, destination, main);
    }
    std::optional<bool> IsStarted(std::int32_t id) {
        return GetFlag(Call(ZoomControlMethod::IsZoomWindowStarted, id, Out<std::uint8_t>{0}), 2);
    }
    std::optional<bool> IsMuted(std::int32_t id) {
        return GetFlag(Call(ZoomControlMethod::IsZoomWindowMuted, id, Out<std::uint8_t>{0}), 2);
    }
    std::optional<bool> IsAvailable() {
        return GetFlag(Call(ZoomControlMethod::IsZoomAvailable, Out<std::uint8_t>{0}), 1);
    }
    std::int32_t SharingType() { return *Call(ZoomControlMethod::GetZoomSharingType, Out{0}).Get<std::int32_t>(1); }
    Ids Connected() {
        const Reply reply = Call(ZoomControlMethod::GetConnectedZoomWindows, OutObject{});
        EXPECT_EQ(reply.Status(), kDone);
        return reply.GetIds(1);
    }

private:
    static std::optional<bool> GetFlag(const Reply& reply, std::int16_t place) {
        const auto flag = reply.Get<std::uint8_t>(place);
        EXPECT_EQ(reply.Status() > 0, flag.has_value());
        return flag ? std::optional(*flag != 0) : std::nullopt;
    }
};

TEST(ZoomControl, MakesWindowsUpToALimit) {
    TestTv tv;
    Zoomer zoomer(tv);
    EXPECT_EQ(zoomer.IsAvailable(), true);
    EXPECT_EQ(zoomer.SharingType(), 1);
    EXPECT_TRUE(zoomer.Connected().empty());
    for (std::int32_t id = 1; id <= 4; ++id)
        EXPECT_EQ(zoomer.Create(), id);
    EXPECT_EQ(zoomer.Connected(), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(zoomer.IsAvailable(), false);
    EXPECT_EQ(zoomer.SharingType(), 0);
    const Reply reply = zoomer.Create(kPart, kPlace, kMain);
    EXPECT_LT(reply.Status(), 0);
    EXPECT_FALSE(reply.Find(1));
    EXPECT_TRUE(tv.Logged("tvfpaparser", "CreateZoomWindow refused: there are 4 windows"));
    EXPECT_EQ(zoomer.Delete({2}), kDone);
    EXPECT_EQ(zoomer.SharingType(), 2);
    EXPECT_EQ(zoomer.Create(), 5); // ids are not reused
    EXPECT_EQ(tv.Set("zoom-limit", {"5"}), "");
    EXPECT_EQ(zoomer.IsAvailable(), true);
}

TEST(ZoomControl, SharesWithWindowsOfItsOwnPipelineOnly) {
    TestTv tv;
    Zoomer zoomer(tv);
    Zoomer other(tv, {101, 0});
    other.Create();
    EXPECT_EQ(other.SharingType(), 2);
    EXPECT_EQ(zoomer.SharingType(), 1);
}

TEST(ZoomControl, ChecksEveryRectangle) {
    TestTv tv;
    Zoomer zoomer(tv);
    const std::int32_t window = zoomer.Create();
    for (const Rect& bad : {Rect{-1, 0, 100, 100}, Rect{0, 0, 0, 0}, Rect{0, 0, 10, -10}, Rect{1900, 0, 100, 100},
                            Rect{0, 1000, 100, 81}, Rect{INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX}}) {
        EXPECT_LT(zoomer.Create(bad, kPlace, kMain).Status(), 0);
        EXPECT_TRUE(tv.Logged("tvfpaparser", "CreateZoomWindow refused"));
        EXPECT_LT(zoomer.Create(kPart, bad, kMain).Status(), 0);
        EXPECT_LT(zoomer.Create(kPart, kPlace, bad).Status(), 0);
        EXPECT_LT(zoomer.SetRect(window, bad, kPlace, kMain), 0);
        EXPECT_TRUE(tv.Logged("tvfpaparser", "SetZoomWindowRect refused"));
        EXPECT_LT(zoomer.SetRect(window, kPart, bad, kMain), 0);
        EXPECT_LT(zoomer.SetRect(window, kPart, kPlace, bad), 0);
        EXPECT_LT(zoomer.Delete({window}, bad), 0);
    }
    EXPECT_EQ(zoomer.Connected(), Ids{window});
    EXPECT_EQ(tv.State("/zoom/windows/1/destination"), sim::ToJson(kPlace));
    EXPECT_EQ(tv.State("/pipelines/1:0/mainPicture"), sim::ToJson(kMain));
}

TEST(ZoomControl, MovesAWindowAndTheMainPicture) {
    TestTv tv;
    Zoomer zoomer(tv);
    const std::int32_t window = zoomer.Create();
    const Rect part{0, 0, 1, 1};
    const Rect place{10, 20, 30, 40};
    const Rect main{0, 0, 1280, 720};
    EXPECT_EQ(zoomer.SetRect(window, part, place, main), kDone);
    EXPECT_EQ(tv.State("/zoom/windows/1/source"), sim::ToJson(part));
    EXPECT_EQ(tv.State("/zoom/windows/1/destination"), sim::ToJson(place));
    EXPECT_EQ(tv.State("/pipelines/1:0/mainPicture"), sim::ToJson(main));
    EXPECT_EQ(zoomer.Delete({window}, kMain), kDone);
    EXPECT_EQ(tv.State("/pipelines/1:0/mainPicture"), sim::ToJson(kMain));
    EXPECT_EQ(tv.State("/zoom/windows"), nlohmann::json::object());
}

TEST(ZoomControl, StartsAndMutesSeveralAtOnce) {
    TestTv tv;
    Zoomer zoomer(tv);
    const std::int32_t first = zoomer.Create();
    const std::int32_t second = zoomer.Create();
    EXPECT_EQ(zoomer.IsStarted(first), false);
    EXPECT_EQ(zoomer.IsMuted(first), false);
    EXPECT_EQ(zoomer.Set({first, second}, true), kDone);
    EXPECT_EQ(zoomer.Mute({second, second}, true), kDone);
    EXPECT_EQ(zoomer.IsStarted(first), true);
    EXPECT_EQ(zoomer.IsStarted(second), true);
    EXPECT_EQ(zoomer.IsMuted(first), false);
    EXPECT_EQ(zoomer.IsMuted(second), true);
    EXPECT_EQ(zoomer.Mute({second}, false), kDone);
    EXPECT_EQ(zoomer.Set({first}, false), kDone);
    EXPECT_EQ(zoomer.IsMuted(second), false);
    EXPECT_EQ(zoomer.IsStarted(first), false);
}

TEST(ZoomControl, RefusesUnknownWindowsAllOrNothing) {
    TestTv tv;
    Zoomer zoomer(tv);
    const std::int32_t window = zoomer.Create();
    for (const std::int32_t unknown : {-1, 0, 2, INT32_MAX}) {
        EXPECT_LT(zoomer.Set({window, unknown}, true), 0);
        EXPECT_TRUE(tv.Logged("tvfpaparser", "SetZoomWindow refused"));
        EXPECT_LT(zoomer.Mute({window, unknown}, true), 0);
        EXPECT_LT(zoomer.Delete({window, unknown}), 0);
        EXPECT_LT(zoomer.SetRect(unknown, kPart, kPlace, kMain), 0);
        EXPECT_FALSE(zoomer.IsStarted(unknown));
        EXPECT_FALSE(zoomer.IsMuted(unknown));
    }
    EXPECT_LT(zoomer.Delete({}), 0);
    EXPECT_EQ(zoomer.IsStarted(window), false);
    EXPECT_EQ(zoomer.IsMuted(window), false);
    EXPECT_EQ(zoomer.Connected().size(), 1u);
}

TEST(ZoomControl, WindowsBelongToTheirPipelineAndClient) {
    TestTv tv;
    Zoomer owner(tv);
    Zoomer other(tv);
    Zoomer elsewhere(tv, {101, 0});
    const std::int32_t window = owner.Create();
    // All clients see it.
    EXPECT_EQ(owner.Set({window}, true), kDone);
    EXPECT_EQ(other.IsStarted(window), true);
    EXPECT_EQ(other.Connected(), Ids{window});
    EXPECT_LT(other.Delete({window}), 0);
    EXPECT_TRUE(tv.Logged("tvfpaparser", "window 1 belongs to client"));
    EXPECT_LT(other.Mute({window}, true), 0);
    EXPECT_LT(other.SetRect(window, kPart, kPlace, kMain), 0);
    EXPECT_FALSE(elsewhere.IsStarted(window));
    EXPECT_TRUE(elsewhere.Connected().empty());
    // It does not end with the session.
    owner.Close<ZoomControlMethod>();
    EXPECT_EQ(other.Connected(), Ids{window});
}

TEST(ZoomControl, WindowsVanishWithTheirClient) {
    TestTv tv;
    Zoomer owner(tv);
    Zoomer other(tv);
    owner.Create(kPart, kPlace, {0, 0, 640, 480});
    const std::int32_t kept = other.Create(kPart, kPlace, {0, 0, 960, 540}).Get<std::int32_t>(1).value();
    owner.Disconnect();
    EXPECT_EQ(other.Connected().size(), 2u);
    owner.Reconnect();
    owner.Die();
    EXPECT_EQ(other.Connected(), Ids{kept});
    EXPECT_EQ(tv.State("/pipelines/1:0/mainPicture/width"), 960);
    EXPECT_TRUE(tv.Logged("tvfpaparser", "removed with client"));
}

TEST(ZoomControl, TheMainPictureIsWholeAgainWhenTheLastClientIsGone) {
    TestTv tv;
    Zoomer owner(tv, {101, 0});
    owner.Create(kPart, kPlace, {0, 0, 640, 480});
    EXPECT_EQ(tv.State("/pipelines/101:0/mainPicture/width"), 640);
    owner.Die();
    EXPECT_FALSE(tv.State("/pipelines").contains("101:0"));
    EXPECT_EQ(tv.State("/zoom/windows"), nlohmann::json::object());
}

} // namespace
