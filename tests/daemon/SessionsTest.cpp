#include <gtest/gtest.h>

#include "FakeInterface.h"
#include "TestTv.h"

namespace {

using Events = std::vector<std::string>;

class SessionsTest : public testing::Test {
public:
    TestTv tv;
    FakeInterface& fake = tv.context.Register<FakeInterface>();
    TestClient client{tv};
    TestClient other{tv};
};

TEST_F(SessionsTest, IdsCountFromOneAndAreNotUsedAgain) {
    EXPECT_EQ(client.Open<FakeMethod>(), 1u);
    EXPECT_EQ(client.Close(1), kDone);
    EXPECT_EQ(client.Open<FakeMethod>(), 2u);
    EXPECT_EQ(tv.context.sessions.Find(1), nullptr);
    EXPECT_NE(tv.context.sessions.Find(2), nullptr);
}

TEST_F(SessionsTest, TheInterfaceMayRefuse) {
    EXPECT_EQ(client.Open<FakeMethod>({-1, 0}), 0u);
    EXPECT_EQ(tv.context.sessions.GetCount(), 0u);
    EXPECT_EQ(client.Open<FakeMethod>({0, 0}), 1u);
}

TEST_F(SessionsTest, AreCountedForEachClient) {
    const auto count = [this](std::uint32_t session) {
        return tv.context.sessions.Find(session)->client->GetSessionCount();
    };
    const std::uint32_t first = client.Open<FakeMethod>();
    const std::uint32_t second = client.Open<FakeMethod>();
    const std::uint32_t ofOther = other.Open<FakeMethod>();
    EXPECT_EQ(client.Open<FakeMethod>({-1, 0}), 0u); // refused
    EXPECT_EQ(count(first), 2u);
    EXPECT_EQ(count(ofOther), 1u);
    client.Close(second);
    EXPECT_EQ(count(first), 1u);
}

TEST_F(SessionsTest, OnlyItsOwnClientClosesASession) {
    EXPECT_EQ(client.Open<FakeMethod>(), 1u);
    EXPECT_LT(other.Close(1), 0);
    EXPECT_LT(client.Close(2), 0);
    EXPECT_EQ(client.Close(1), kDone);
    EXPECT_LT(client.Close(1), 0);
}

TEST_F(SessionsTest, HooksAreCalledAfterOpeningAndBeforeClosing) {
    tv.context.sessions.AddHook([this](const sim::Session& session, bool opened) {
        fake.events.push_back((opened ? "opened " : "closes ") + std::to_string(session.id));
    });
    client.Close(client.Open<FakeMethod>({7, 0}));
    EXPECT_EQ(fake.events, (Events{"open 7", "opened 1", "closes 1", "close 7"}));
}

TEST_F(SessionsTest, BeyondTheLimitTheOneUnusedTheLongestIsClosed) {
    constexpr std::size_t kLimit = 4096;
    client.ListenToSignals(); // the longest unused, but connected
    EXPECT_EQ(client.Do(FakeMethod::Set, 1), kDone);
    client.Open<FakeMethod>({7, 0});
    client.Open<FakeMethod>({8, 0});
    const sim::Client& owner = *tv.context.sessions.Find(1)->client;
    while (owner.GetSessionCount() < kLimit)
        client.Open<FakeMethod>({9, 0});
    fake.events.clear();
    EXPECT_EQ(client.Do(FakeMethod::Set, 2), kDone);
    EXPECT_NE(client.Open<FakeMethod>({10, 0}), 0u);
    EXPECT_TRUE(tv.Logged("norvex", "has more than 4096 sessions: session 3, unused the longest, is closed"));
    EXPECT_NE(client.Open<FakeMethod>({11, 0}), 0u);
    EXPECT_EQ(fake.events, (Events{"set 2", "open 10", "close 7", "open 11", "close 8"}));
    EXPECT_EQ(owner.GetSessionCount(), kLimit);
    EXPECT_TRUE(tv.context.signals.IsAttached(1));
    // Others have their own share.
    other.Open<FakeMethod>({12, 0});
    EXPECT_EQ(fake.events.back(), "open 12");
}

TEST_F(SessionsTest, AClientThatIsGoneLosesItsSessionsNewestFirst) {
    client.Open<FakeMethod>({1, 0});
    other.Open<FakeMethod>({2, 0});
    client.Open<FakeMethod>({3, 0});
    client.Disconnect();
    EXPECT_EQ(tv.context.sessions.GetCount(), 3u);
    client.Reconnect();
    client.Die();
    EXPECT_EQ(fake.events, (Events{"open 1", "open 2", "open 3", "close 3", "close 1"}));
    EXPECT_EQ(tv.context.sessions.GetCount(), 1u);
    EXPECT_EQ(tv.context.clients.GetCount(), 1u);
}

TEST_F(SessionsTest, TwoClientsMayGoAtOnce) {
    client.Open<FakeMethod>({1, 0});
    other.Open<FakeMethod>({2, 0});
    client.Disconnect();
    other.Disconnect();
    tv.WaitUntil([this] { return tv.context.clients.GetCount() == 0; });
    EXPECT_EQ(tv.context.sessions.GetCount(), 0u);
    EXPECT_EQ(fake.events, (Events{"open 1", "open 2", "close 1", "close 2"}));
}

TEST_F(SessionsTest, AClientThatComesBackInTimeKeepsItsSessions) {
    const std::uint32_t session = client.Open<FakeMethod>();
    client.Disconnect();
    client.Reconnect();
    other.Die(); // its grace period began later: the first one's would have passed
    EXPECT_EQ(client.Close(session), kDone);
}

TEST_F(SessionsTest, TheGracePeriodBeginsWithTheLastConnectionsEnd) {
    const std::uint32_t session = client.Open<FakeMethod>();
    client.Reconnect(); // a second connection
    client.Disconnect();
    other.Die();
    EXPECT_NE(tv.context.sessions.Find(session), nullptr);
    client.Reconnect();
    client.Disconnect();
    client.Die();
    EXPECT_EQ(tv.context.sessions.Find(session), nullptr);
    EXPECT_EQ(tv.context.clients.GetCount(), 0u);
}

} // namespace
