#include <csignal>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

#include <norvex/core/MessageBuffer.h>

#include "Channel.h"
#include "FakeService.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kEnough{5000};
constexpr milliseconds kShort{60};

class ChannelTest : public testing::Test {
protected:
    // A channel whose hello has been answered.
    std::unique_ptr<Channel> Open() {
        Failure failure = Failure::None;
        auto channel = Channel::Open(service.GetPath(), {}, kEnough, failure);
        EXPECT_EQ(failure, Failure::None);
        connection = service.Accept();
        EXPECT_EQ(connection->Welcome(77, 5), wire::Role::Calls);
        EXPECT_EQ(channel->AwaitWelcome(kEnough), Failure::None);
        return channel;
    }

    static Failure Call(Channel& channel, std::uint32_t serial, milliseconds limit = kEnough) {
        TCMessageBuffer reply;
        return channel.Call({"interface", "Method", 3, serial, 9}, nullptr, 0, limit, reply);
    }

    FakeService service;
    std::unique_ptr<FakeService::Connection> connection;
    TCMessageBuffer reply;
};

} // namespace

TEST_F(ChannelTest, TheHelloSaysWhoAndWhatFor) {
    Failure failure = Failure::None;
    const Channel::Purpose purpose{wire::Role::Signals, 31, {}};
    const auto channel = Channel::Open(service.GetPath(), purpose, kEnough, failure);
    ASSERT_NE(channel, nullptr);
    connection = service.Accept();
    EXPECT_EQ(connection->Welcome(0xFEDCBA9876543210, 5), wire::Role::Signals);
    EXPECT_EQ(connection->helloSession, 31u);
    EXPECT_EQ(channel->AwaitWelcome(kEnough), Failure::None);
    EXPECT_EQ(channel->GetEpoch(), 0xFEDCBA9876543210u);
    EXPECT_EQ(channel->GetClient(), 5u);
}

TEST_F(ChannelTest, NobodyListening) {
    service.StopListening();
    Failure failure = Failure::None;
    EXPECT_EQ(Channel::Open(service.GetPath(), {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(Channel::Open("/nowhere/norvex.sock", {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(Channel::Open(std::string(200, 'x'), {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(Channel::Open("", {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
}

TEST_F(ChannelTest, AFullBacklogIsMuteInTime) {
    std::vector<std::unique_ptr<Channel>> waiting;
    Failure failure = Failure::None;
    while (failure == Failure::None && waiting.size() < 1000)
        waiting.push_back(Channel::Open(service.GetPath(), {}, milliseconds(0), failure));
    EXPECT_EQ(failure, Failure::Mute) << "without waiting";
    const Deadline deadline(kEnough);
    EXPECT_EQ(Channel::Open(service.GetPath(), {}, kShort, failure), nullptr);
    EXPECT_EQ(failure, Failure::Mute) << "after its limit";
    EXPECT_FALSE(deadline.HasPassed());
}

TEST_F(ChannelTest, AHelloThatIsNotAnswered) {
    Failure failure = Failure::None;
    const auto channel = Channel::Open(service.GetPath(), {}, kEnough, failure);
    ASSERT_NE(channel, nullptr);
    EXPECT_EQ(channel->AwaitWelcome(milliseconds(0)), Failure::Mute);
    EXPECT_EQ(channel->AwaitWelcome(kShort), Failure::Mute);
    connection = service.Accept();
    connection->SendWelcome(3, 4);
    EXPECT_EQ(channel->AwaitWelcome(milliseconds(0)), Failure::None) << "the answer came late";
    EXPECT_EQ(channel->GetEpoch(), 3u);
}

TEST_F(ChannelTest, WelcomesThatAreNone) {
    const auto await = [&](auto&& answer) {
        Failure failure = Failure::None;
        const auto channel = Channel::Open(service.GetPath(), {}, kEnough, failure);
        connection = service.Accept();
        answer();
        return channel->AwaitWelcome(kEnough);
    };
    EXPECT_EQ(await([&] { connection->Close(); }), Failure::Gone);
    EXPECT_EQ(await([&] { connection->SendRaw("nonsense", 8); }), Failure::Nonsense);
    EXPECT_EQ(await([&] { connection->Send(wire::MessageKind::Reply, 1, nullptr, 0); }),
              Failure::Nonsense);
    EXPECT_EQ(await([&] { connection->Send(wire::MessageKind::Welcome, 1, nullptr, 0); }),
              Failure::Nonsense);
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kWelcomeVersion, wire::kProtocolVersion + 1);
    writer.PutValue(wire::kWelcomeEpoch, std::uint64_t{1});
    EXPECT_EQ(await([&] {
                  connection->Send(wire::MessageKind::Welcome, 1, tree.GetData(), tree.GetSize());
              }),
              Failure::Nonsense);
}

TEST_F(ChannelTest, ACallAndItsReply) {
    const auto channel = Open();
    std::thread far([&] {
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        EXPECT_EQ(message.header.kind, wire::MessageKind::Call);
        EXPECT_EQ(message.header.methodId, -4);
        EXPECT_EQ(message.header.serial, 12u);
        EXPECT_EQ(message.header.session, 9u);
        EXPECT_EQ(message.interfaceName, "interface");
        EXPECT_EQ(message.method, "Method");
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(message.tree), 4), "tree");
        connection->Send(wire::MessageKind::Reply, 12, "reply", 5);
    });
    EXPECT_EQ(channel->Call({"interface", "Method", -4, 12, 9}, "tree", 4, kEnough, reply),
              Failure::None);
    far.join();
    ASSERT_EQ(reply.GetSize(), 5u);
    EXPECT_EQ(std::string_view(static_cast<const char*>(reply.GetData()), 5), "reply");
}

TEST_F(ChannelTest, LongMessagesGoBothWaysInPieces) {
    const auto channel = Open();
    std::string sent(3000000, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<char>(i * 31 >> 3);
    std::thread far([&] {
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        const std::string tree(reinterpret_cast<const char*>(message.tree),
                               message.header.treeSize);
        connection->Send(wire::MessageKind::Reply, 1, tree.data(), tree.size());
    });
    EXPECT_EQ(channel->Call({"i", "m", 0, 1, 0}, sent.data(), sent.size(), kEnough, reply),
              Failure::None);
    far.join();
    ASSERT_EQ(reply.GetSize(), sent.size());
    EXPECT_TRUE(std::equal(sent.begin(), sent.end(), static_cast<const char*>(reply.GetData())));
}

TEST_F(ChannelTest, AMuteServiceIsLeftInTime) {
    const auto channel = Open();
    const Deadline deadline(kEnough);
    EXPECT_EQ(Call(*channel, 1, kShort), Failure::Mute);
    EXPECT_FALSE(deadline.HasPassed());
}

TEST_F(ChannelTest, AServiceThatTakesNothingIsLeftInTime) {
    const auto channel = Open();
    const std::string huge(20u << 20, 'x');
    EXPECT_EQ(channel->Call({"i", "m", 0, 1, 0}, huge.data(), huge.size(), kShort, reply),
              Failure::Mute);
}

TEST_F(ChannelTest, AServiceThatEndsInTheMiddleOfAReply) {
    const auto channel = Open();
    const std::string huge(1u << 20, 'x');
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.serial = 1;
    wire::PacketSender sender(header, {}, {}, huge.data(), huge.size());
    iovec pieces[wire::PacketSender::kMaxPieces];
    std::string packet;
    for (int i = 0, count = sender.Next(pieces); i < count; ++i)
        packet.append(static_cast<const char*>(pieces[i].iov_base), pieces[i].iov_len);
    connection->SendRaw(packet.data(), packet.size());
    std::thread far([&] {
        connection->ReceivePacket();
        connection->Close();
    });
    EXPECT_EQ(channel->Call({"i", "m", 0, 1, 0}, nullptr, 0, kEnough, reply), Failure::Gone);
    far.join();
    EXPECT_EQ(reply.GetSize(), 0u);
}

TEST_F(ChannelTest, AServiceThatStopsInTheMiddleOfAReply) {
    const auto channel = Open();
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.serial = 1;
    const std::string huge(1u << 20, 'x');
    wire::PacketSender sender(header, {}, {}, huge.data(), huge.size());
    iovec pieces[wire::PacketSender::kMaxPieces];
    std::string packet;
    for (int i = 0, count = sender.Next(pieces); i < count; ++i)
        packet.append(static_cast<const char*>(pieces[i].iov_base), pieces[i].iov_len);
    connection->SendRaw(packet.data(), packet.size());
    EXPECT_EQ(channel->Call({"i", "m", 0, 1, 0}, nullptr, 0, kShort, reply), Failure::Mute);
    EXPECT_EQ(reply.GetSize(), 0u);
}

TEST_F(ChannelTest, AServiceThatEndedBeforeTheCall) {
    const auto channel = Open();
    connection->Close();
    EXPECT_EQ(Call(*channel, 1), Failure::NotSent);
}

TEST_F(ChannelTest, AServiceThatEndsInsteadOfReplying) {
    const auto channel = Open();
    std::thread far([&] {
        connection->ReceivePacket();
        connection->Close();
    });
    EXPECT_EQ(Call(*channel, 1), Failure::Gone);
    far.join();
}

TEST_F(ChannelTest, AReplyToAnEarlierCallIsPassedOver) {
    const auto channel = Open();
    const std::string late(100000, 'l');
    std::thread far([&] {
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        connection->Send(wire::MessageKind::Reply, 4, late.data(), late.size());
        connection->Send(wire::MessageKind::Reply, 5, "late", 4);
        connection->Send(wire::MessageKind::Reply, 6, "right", 5);
    });
    EXPECT_EQ(channel->Call({"i", "m", 0, 6, 0}, nullptr, 0, kEnough, reply), Failure::None);
    far.join();
    EXPECT_EQ(std::string_view(static_cast<const char*>(reply.GetData()), reply.GetSize()),
              "right");
}

TEST_F(ChannelTest, AnswersThatMakeNoSense) {
    const auto answer = [&](auto&& send) {
        const auto channel = Open();
        std::thread far([&] {
            connection->ReceivePacket();
            send();
        });
        const Failure failure = Call(*channel, 6);
        far.join();
        return failure;
    };
    EXPECT_EQ(answer([&] { connection->Send(wire::MessageKind::Reply, 7, nullptr, 0); }),
              Failure::Nonsense)
        << "to a call that has not been made";
    EXPECT_EQ(answer([&] { connection->Send(wire::MessageKind::Welcome, 6, nullptr, 0); }),
              Failure::Nonsense);
    EXPECT_EQ(answer([&] { connection->Send(wire::MessageKind::Signal, 6, nullptr, 0); }),
              Failure::Nonsense);
    EXPECT_EQ(answer([&] { connection->SendRaw("x", 1); }), Failure::Nonsense);
    const std::string long_(100000, 'x');
    EXPECT_EQ(answer([&] { connection->SendRaw(long_.data(), long_.size()); }), Failure::Nonsense)
        << "longer than any packet";
}

TEST_F(ChannelTest, ASignalHandlerDoesNotEndTheWait) {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);
    const auto channel = Open();
    const pthread_t caller = pthread_self();
    std::thread far([&] {
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        for (int i = 0; i < 20; ++i) {
            pthread_kill(caller, SIGUSR1);
            std::this_thread::yield();
        }
        connection->Reply(message, 1);
    });
    EXPECT_EQ(Call(*channel, 1), Failure::None);
    far.join();
    sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(ChannelTest, PushedMessagesAreTakenWithoutWaiting) {
    const auto channel = Open();
    wire::Message message;
    EXPECT_EQ(channel->TakePushed(message), Failure::Mute);
    connection->SendSignal(81, 1, 0, 5);
    connection->SendSignal(82, 1, 0, 5);
    EXPECT_EQ(channel->TakePushed(message), Failure::None);
    EXPECT_EQ(message.header.kind, wire::MessageKind::Signal);
    EXPECT_EQ(channel->TakePushed(message), Failure::None);
    EXPECT_EQ(channel->TakePushed(message), Failure::Mute);
    connection->Close();
    EXPECT_EQ(channel->TakePushed(message), Failure::Gone);
}
