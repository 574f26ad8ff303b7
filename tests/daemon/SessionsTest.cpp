#include "Sessions.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Clients.h"
#include "Interface.h"

namespace {

NORVEX_INTERFACE(Fake, Do)

class FakeInterface : public sim::Interface {
public:
    explicit FakeInterface(std::vector<std::string>& events)
        : Interface(interfaces::kTable<FakeMethod>, Calls::ToSession), m_events(events) {}

    std::int32_t OpenSession(sim::Session& session) override {
        if (session.profile < 0)
            return -3;
        m_events.push_back("open " + std::to_string(session.profile));
        return 0;
    }
    void CloseSession(sim::Session& session) override {
        m_events.push_back("close " + std::to_string(session.profile));
    }

private:
    std::vector<std::string>& m_events;
};

constexpr sim::Token kToken{1};
constexpr sim::Token kOtherToken{2};

class SessionsTest : public testing::Test {
protected:
    SessionsTest() {
        m_clients.AddReleaseHook([this](sim::Client& client) {
            m_sessions.CloseAll(client);
            m_events.push_back("gone " + std::to_string(client.GetNumber()));
        });
    }
    sim::Session* Open(sim::Client& client, std::int32_t profile) {
        return m_sessions.Open(m_interface, profile, 0, client, m_status);
    }

    std::vector<std::string> m_events;
    FakeInterface m_interface{m_events};
    sim::Clients m_clients{1};
    sim::Sessions m_sessions;
    std::int32_t m_status = 99;
};

TEST_F(SessionsTest, IdsCountFromOneAndAreNotUsedAgain) {
    sim::Client& client = m_clients.Connected(kToken);
    EXPECT_EQ(Open(client, 1)->id, 1u);
    EXPECT_EQ(m_status, 0);
    EXPECT_TRUE(m_sessions.Close(1, client));
    EXPECT_EQ(Open(client, 1)->id, 2u);
    EXPECT_EQ(m_sessions.Find(1), nullptr);
    EXPECT_NE(m_sessions.Find(2), nullptr);
}

TEST_F(SessionsTest, TheInterfaceMayRefuse) {
    sim::Client& client = m_clients.Connected(kToken);
    EXPECT_EQ(Open(client, -1), nullptr);
    EXPECT_EQ(m_status, -3);
    EXPECT_EQ(m_sessions.GetCount(), 0u);
}

TEST_F(SessionsTest, AClientsOpenSessionsAreCounted) {
    sim::Client& client = m_clients.Connected(kToken);
    sim::Client& other = m_clients.Connected(kOtherToken);
    Open(client, 1);
    Open(client, 2);
    Open(other, 3);
    Open(client, -1); // refused
    EXPECT_EQ(client.GetSessionCount(), 2u);
    EXPECT_EQ(other.GetSessionCount(), 1u);
    m_sessions.Close(1, client);
    EXPECT_EQ(client.GetSessionCount(), 1u);
    m_sessions.CloseAll(client);
    EXPECT_EQ(client.GetSessionCount(), 0u);
    EXPECT_EQ(other.GetSessionCount(), 1u);
}

TEST_F(SessionsTest, OnlyItsOwnClientClosesASession) {
    sim::Client& client = m_clients.Connected(kToken);
    sim::Client& other = m_clients.Connected(kOtherToken);
    Open(client, 1);
    EXPECT_FALSE(m_sessions.Close(1, other));
    EXPECT_FALSE(m_sessions.Close(2, client));
    EXPECT_TRUE(m_sessions.Close(1, client));
    EXPECT_FALSE(m_sessions.Close(1, client));
}

TEST_F(SessionsTest, HooksAreToldAroundTheInterface) {
    sim::Client& client = m_clients.Connected(kToken);
    m_sessions.AddHook([this](const sim::Session& session, bool opened) {
        m_events.push_back((opened ? "opened " : "closes ") + std::to_string(session.id));
    });
    Open(client, 7);
    m_sessions.Close(1, client);
    EXPECT_EQ(m_events, (std::vector<std::string>{"open 7", "opened 1", "closes 1", "close 7"}));
}

TEST_F(SessionsTest, AClientThatIsGoneLosesItsSessionsNewestFirst) {
    sim::Client& client = m_clients.Connected(kToken);
    sim::Client& other = m_clients.Connected(kOtherToken);
    Open(client, 1);
    Open(other, 2);
    Open(client, 3);
    m_events.clear();
    m_clients.Disconnected(client);
    EXPECT_TRUE(m_events.empty());
    while (m_events.size() < 3)
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
    EXPECT_EQ(m_events, (std::vector<std::string>{"close 3", "close 1", "gone 1"}));
    EXPECT_EQ(m_sessions.GetCount(), 1u);
    EXPECT_EQ(m_clients.GetCount(), 1u);
}

TEST_F(SessionsTest, AClientThatComesBackInTimeKeepsAll) {
    sim::Client& client = m_clients.Connected(kToken);
    Open(client, 1);
    m_clients.Disconnected(client);
    EXPECT_EQ(&m_clients.Connected(kToken), &client);
    // Another client's grace, begun later, passes; the first one's would have by then.
    m_clients.Disconnected(m_clients.Connected(kOtherToken));
    m_events.clear();
    while (m_events.empty())
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
    EXPECT_EQ(m_events, std::vector<std::string>{"gone 2"});
    EXPECT_EQ(m_sessions.GetCount(), 1u);
}

TEST_F(SessionsTest, TheLastOfSeveralConnectionsCounts) {
    sim::Client& client = m_clients.Connected(kToken);
    m_clients.Connected(kToken);
    m_clients.Disconnected(client);
    m_clients.Disconnected(m_clients.Connected(kOtherToken));
    while (m_events.empty())
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
    EXPECT_EQ(m_events, std::vector<std::string>{"gone 2"});
    m_clients.Disconnected(client);
    while (m_events.size() < 2)
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
    EXPECT_EQ(m_events.back(), "gone 1");
}

} // namespace
