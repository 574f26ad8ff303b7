// Delayed replies, under every way in which their connection can end before they are due.

#include <functional>
#include <memory>

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <wire/Tree.h>

#include "Connection.h"

namespace {

using sim::Connection;
using sim::EventLoop;

// Too much for the kernel to take at once.
constexpr std::size_t kLongReply = 8u << 20;

class Peers : public Connection::Owner {
public:
    Peers() {
        int ends[2]{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends), 0);
        Owner& owner = *this;
        connection = std::make_unique<Connection>(ends[0], 1, owner);
        m_client = ends[1];
    }
    ~Peers() override { CloseClient(); }

    void MessageArrived(Connection&, const wire::Message&) override {}
    void ConnectionEnded(Connection&, const std::string&) override { ++ended; }
    bool HasRoomFor(Connection&, std::size_t) override { return !isFull; }

    void SendLate(std::size_t size) {
        wire::Buffer tree;
        wire::TreeWriter(tree).PutLeaf(0, wire::NodeKind::Array, std::string(size, 'x').data(), size);
        connection->SendLate(0, {}, tree);
    }
    void SendNonsense() const { EXPECT_EQ(send(m_client, "x", 1, MSG_NOSIGNAL), 1); }
    void CloseClient() {
        if (m_client >= 0)
            close(m_client);
        m_client = -1;
    }
    // Packets that the client has got.
    int CountReceived() const {
        char byte = 0;
        int count = 0;
        while (recv(m_client, &byte, 1, 0) > 0)
            ++count;
        return count;
    }

    std::unique_ptr<Connection> connection;
    bool isFull = false;
    int ended = 0;

private:
    int m_client;
};

struct Ending {
    const char* name;
    std::function<void(Peers&)> end;
    int ended = 1; // how often the owner is told
};

void PrintTo(const Ending& ending, std::ostream* out) {
    *out << ending.name;
}

class LateRepliesTest : public testing::TestWithParam<Ending> {};

TEST_P(LateRepliesTest, EndWithTheirConnection) {
    Peers peers;
    sim::Timer end;
    // In the round in which they are due: nothing else of the loop comes in between.
    end.Start(0, [&] { GetParam().end(peers); });
    for (int count = 0; count < 3; ++count)
        peers.SendLate(kLongReply);
    EXPECT_GE(peers.held, 3 * kLongReply);
    EXPECT_TRUE(EventLoop::Get().RunRound(EventLoop::Wait::UntilReady));
    EXPECT_EQ(peers.ended, GetParam().ended);
    EXPECT_EQ(peers.held, 0u);
    EXPECT_FALSE(EventLoop::Get().RunRound(EventLoop::Wait::Never));
}

INSTANTIATE_TEST_SUITE_P(
    All, LateRepliesTest,
    testing::Values(Ending{"found when the first is sent", [](Peers& peers) { peers.CloseClient(); }},
                    Ending{"no room for what is not taken", [](Peers& peers) { peers.isFull = true; }},
                    Ending{"the client's end",
                           [](Peers& peers) {
                               peers.CloseClient();
                               peers.connection->Read();
                           }},
                    Ending{"malformed",
                           [](Peers& peers) {
                               peers.SendNonsense();
                               peers.connection->Read();
                           }},
                    Ending{"the daemon's decision", [](Peers& peers) { peers.connection->End("injected: close"); }},
                    Ending{"the daemon's end",
                           [](Peers& peers) {
                               peers.connection.reset();
                               peers.held = 0;
                           },
                           0}));

TEST(LateReplies, AreDroppedWithTheirConnectionWhenThereIsNoRoom) {
    Peers peers;
    peers.SendLate(1);
    peers.isFull = true;
    peers.SendLate(1);
    EXPECT_EQ(peers.ended, 1);
    EXPECT_EQ(peers.held, 0u);
}

TEST(LateReplies, OfOneConnectionComeInTheirOrder) {
    Peers peers;
    for (int count = 0; count < 3; ++count)
        peers.SendLate(1);
    EXPECT_TRUE(EventLoop::Get().RunRound(EventLoop::Wait::UntilReady));
    EXPECT_EQ(peers.CountReceived(), 3);
    EXPECT_EQ(peers.held, 0u);
}

} // namespace
