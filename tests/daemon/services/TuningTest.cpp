#include <gtest/gtest.h>

#include "LineUpTv.h"

namespace {

// What pipelines do with a line-up's services.
class TuningTest : public testing::Test {
protected:
    LineUpTv tv;
    LineUpClient client{tv};
};

TEST_F(TuningTest, TunesAndNotifiesSubscribers) {
    LineUpClient other(tv);
    other.Subscribe(193);
    client.Subscribe(81);
    EXPECT_EQ(client.SetService(kNorvexOne), kDone);
    EXPECT_EQ(tv.MainState("service"), "0xfa0000000002002d");
    EXPECT_EQ(tv.MainState("tuner/at"), "air/474000");
    EXPECT_EQ(tv.MainState("latest/0/broadcast"), "0xfa0000000002002d");
    EXPECT_EQ(client.SetSource(0, 0x1001), kDone);
    EXPECT_EQ(tv.MainState("tuner/at"), "air/482000");
    EXPECT_EQ(client.SetTvMode({1, 0}, 0xfffffffffffffffeULL), kDone);
    EXPECT_EQ(tv.MainState("tuner/at"), "cable/346000");
    EXPECT_EQ(client.SetTvMode({2, 1}, 0xe000000000000021ULL), kDone);
    EXPECT_EQ(tv.MainState("latest/2/streamed"), "0xe000000000000021");
    EXPECT_EQ(client.TakeSignals(),
              (Signals{"81 1:0 0x700000001", "81 1:0 0x100000001", "81 1:0 0x1e00000002", "81 1:0 0x500000009"}));
    EXPECT_TRUE(other.TakeSignals().empty());
}

TEST_F(TuningTest, RefusesWhatATvRefuses) {
    client.Subscribe(81);
    EXPECT_EQ(client.SetService(kInvalidService), -3);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetService refused: the invalid service"));
    EXPECT_EQ(client.SetService(0x999), -2);
    EXPECT_EQ(client.SetService(0x2001), -1); // cable
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "belongs to antenna cable, not air"));
    EXPECT_EQ(client.SetSource(0, kInvalidService), -3);
    EXPECT_EQ(client.SetSource(0, 0x999), -2);
    EXPECT_EQ(client.SetSource(0, 0x3001), -1);
    EXPECT_EQ(client.SetTvMode({0, 0}, kInvalidService), -3);
    EXPECT_EQ(client.SetTvMode({1, 0}, kNorvexOne), -1);
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_EQ(tv.MainState("tvMode/antenna"), 0);
    EXPECT_TRUE(client.TakeSignals().empty());
}

TEST_F(TuningTest, ServicesThatAreGoneAreShownNoLonger) {
    EXPECT_EQ(client.SetService(kNorvexOne), kDone);
    EXPECT_EQ(tv.Load("transponder air 1000\nservice 0x1 1 \"One\""), "");
    EXPECT_TRUE(tv.MainState("service").is_null());
    EXPECT_EQ(client.SetService(kNorvexOne), -2);
    EXPECT_EQ(client.SetService(1), kDone);
    // It has moved.
    EXPECT_EQ(tv.Load("transponder air 2000\nservice 0x1 1 \"One\""), "");
    EXPECT_EQ(tv.MainState("service"), "0x1");
    EXPECT_EQ(tv.MainState("tuner/at"), "air/2000");
}

} // namespace
