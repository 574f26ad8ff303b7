#include "DaemonConnection.h"

#include <csignal>
#include <filesystem>
#include <thread>

#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <norvex/core/MessageBuffer.h>

#include "FakeService.h"
#include "MessagePackets.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kEnough{5000};
constexpr milliseconds kShort{60};

// Of a reply to call 1.
std::vector<Packet> PacketsOfReply(std::size_t treeSize) {
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    header.serial = 1;
    const std::string tree(treeSize, 'x');
    return ToPackets(header, {}, {}, tree.data(), tree.size());
}

class DaemonConnectionTest : public testing::Test {
protected:
    // A connection whose hello has been answered.
    std::unique_ptr<DaemonConnection> Open() {
        Failure failure = Failure::None;
        auto connection = DaemonConnection::Open(service.GetPath(), {}, kEnough, failure);
        EXPECT_EQ(failure, Failure::None);
        serviceEnd = service.Accept();
        EXPECT_EQ(serviceEnd->Welcome(77, 5), wire::Role::Calls);
        EXPECT_EQ(connection->AwaitWelcome(kEnough), Failure::None);
        return connection;
    }

    static Failure Call(DaemonConnection& connection, std::uint32_t serial, milliseconds limit = kEnough) {
        TCMessageBuffer reply;
        return connection.Call({"interface", "Method", 3, serial, 9}, nullptr, 0, limit, reply);
    }

    // Sends the first packet of a long reply to call 1.
    void BeginReply() {
        const Packet packet = PacketsOfReply(1u << 20).front();
        serviceEnd->SendRaw(packet.data(), packet.size());
    }

    FakeService service;
    std::unique_ptr<FakeService::Connection> serviceEnd;
    TCMessageBuffer reply;
};

} // namespace

TEST_F(DaemonConnectionTest, TheHelloSaysWhoAndWhatFor) {
    Failure failure = Failure::None;
    const DaemonConnection::Purpose purpose{wire::Role::Signals, 31, {}};
    const auto connection = DaemonConnection::Open(service.GetPath(), purpose, kEnough, failure);
    ASSERT_NE(connection, nullptr);
    serviceEnd = service.Accept();
    EXPECT_EQ(serviceEnd->Welcome(0xFEDCBA9876543210, 5), wire::Role::Signals);
    EXPECT_EQ(serviceEnd->helloSession, 31u);
    EXPECT_EQ(connection->AwaitWelcome(kEnough), Failure::None);
    EXPECT_EQ(connection->GetEpoch(), 0xFEDCBA9876543210u);
    EXPECT_EQ(connection->GetClient(), 5u);
}

TEST_F(DaemonConnectionTest, HasEndedInAForkedProcess) {
    const auto connection = Open();
    serviceEnd->SendSignal(81, 1, 0, 7);
    wire::Message message;
    const pid_t child = fork();
    if (child == 0)
        _exit(connection->TakePushed(message) == Failure::Gone ? 0 : 1);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(connection->TakePushed(message), Failure::None);
}

TEST_F(DaemonConnectionTest, NobodyListening) {
    service.StopListening();
    Failure failure = Failure::None;
    EXPECT_EQ(DaemonConnection::Open(service.GetPath(), {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(DaemonConnection::Open("/nowhere/norvex.sock", {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(DaemonConnection::Open(std::string(200, 'x'), {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
    EXPECT_EQ(DaemonConnection::Open("", {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::Absent);
}

TEST_F(DaemonConnectionTest, APathMayBeRelative) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(service.GetPath()).parent_path());
    Failure failure = Failure::None;
    EXPECT_NE(DaemonConnection::Open("norvex.sock", {}, kEnough, failure), nullptr);
    EXPECT_EQ(failure, Failure::None);
    std::filesystem::current_path(before);
}

TEST_F(DaemonConnectionTest, AFullBacklogIsGivenUpInTime) {
    std::vector<std::unique_ptr<DaemonConnection>> waiting;
    Failure failure = Failure::None;
    while (failure == Failure::None && waiting.size() < 1000)
        waiting.push_back(DaemonConnection::Open(service.GetPath(), {}, milliseconds(0), failure));
    EXPECT_EQ(failure, Failure::Unresponsive) << "without waiting";
    const Deadline deadline(kEnough);
    EXPECT_EQ(DaemonConnection::Open(service.GetPath(), {}, kShort, failure), nullptr);
    EXPECT_EQ(failure, Failure::Unresponsive) << "after its limit";
    EXPECT_FALSE(deadline.HasPassed());
}

TEST_F(DaemonConnectionTest, AHelloThatIsNotAnswered) {
    Failure failure = Failure::None;
    const auto connection = DaemonConnection::Open(service.GetPath(), {}, kEnough, failure);
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(connection->AwaitWelcome(milliseconds(0)), Failure::Unresponsive);
    EXPECT_EQ(connection->AwaitWelcome(kShort), Failure::Unresponsive);
    serviceEnd = service.Accept();
    serviceEnd->SendWelcome(3, 4);
    EXPECT_EQ(connection->AwaitWelcome(milliseconds(0)), Failure::None) << "the answer came late";
    EXPECT_EQ(connection->GetEpoch(), 3u);
}

TEST_F(DaemonConnectionTest, MalformedWelcomes) {
    const auto await = [&](auto&& answer) {
        Failure failure = Failure::None;
        const auto connection = DaemonConnection::Open(service.GetPath(), {}, kEnough, failure);
        serviceEnd = service.Accept();
        answer();
        return connection->AwaitWelcome(kEnough);
    };
    EXPECT_EQ(await([&] { serviceEnd->Close(); }), Failure::Gone);
    EXPECT_EQ(await([&] { serviceEnd->SendRaw("nonsense", 8); }), Failure::Malformed);
    EXPECT_EQ(await([&] { serviceEnd->Send(wire::MessageKind::Reply, 1, nullptr, 0); }), Failure::Malformed);
    EXPECT_EQ(await([&] { serviceEnd->Send(wire::MessageKind::Welcome, 1, nullptr, 0); }), Failure::Malformed);
    wire::Buffer tree;
    wire::TreeWriter writer(tree);
    writer.PutValue(wire::kWelcomeVersion, wire::kProtocolVersion + 1);
    writer.PutValue(wire::kWelcomeEpoch, std::uint64_t{1});
    EXPECT_EQ(await([&] { serviceEnd->Send(wire::MessageKind::Welcome, 1, tree.GetData(), tree.GetSize()); }),
              Failure::Malformed);
}

TEST_F(DaemonConnectionTest, ACallAndItsReply) {
    const auto connection = Open();
    std::thread daemon([&] {
        wire::Message message;
        ASSERT_TRUE(serviceEnd->Receive(message));
        EXPECT_EQ(message.header.kind, wire::MessageKind::Call);
        EXPECT_EQ(message.header.methodId, -4);
        EXPECT_EQ(message.header.serial, 12u);
        EXPECT_EQ(message.header.session, 9u);
        EXPECT_EQ(message.interfaceName, "interface");
        EXPECT_EQ(message.method, "Method");
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(message.tree), 4), "tree");
        serviceEnd->Send(wire::MessageKind::Reply, 12, "reply", 5);
    });
    EXPECT_EQ(connection->Call({"interface", "Method", -4, 12, 9}, "tree", 4, kEnough, reply), Failure::None);
    daemon.join();
    ASSERT_EQ(reply.GetSize(), 5u);
    EXPECT_EQ(std::string_view(static_cast<const char*>(reply.GetData()), 5), "reply");
}

// Of one packet that is full, with the names of a call and without those, and longer ones.
TEST_F(DaemonConnectionTest, MessagesOfAnyLengthGoBothWays) {
    constexpr std::size_t kFull = wire::kMaxPacketPayload - wire::kMessageHeaderSize;
    const auto connection = Open();
    std::uint32_t serial = 0;
    for (const std::size_t size : {kFull - 2, kFull - 1, kFull, kFull + 1, std::size_t{3000000}}) {
        std::string sent(size, '\0');
        for (std::size_t i = 0; i < sent.size(); ++i)
            sent[i] = static_cast<char>(i * 31 >> 3);
        ++serial;
        std::thread daemon([&] {
            wire::Message message;
            ASSERT_TRUE(serviceEnd->Receive(message));
            serviceEnd->Send(wire::MessageKind::Reply, serial, message.tree, message.header.treeSize);
        });
        EXPECT_EQ(connection->Call({"i", "m", 0, serial, 0}, sent.data(), size, kEnough, reply), Failure::None);
        daemon.join();
        EXPECT_EQ(std::string_view(static_cast<const char*>(reply.GetData()), reply.GetSize()), sent);
    }
}

TEST_F(DaemonConnectionTest, AnUnresponsiveServiceIsGivenUpInTime) {
    const auto connection = Open();
    const Deadline deadline(kEnough);
    EXPECT_EQ(Call(*connection, 1, kShort), Failure::Unresponsive);
    EXPECT_FALSE(deadline.HasPassed());
}

TEST_F(DaemonConnectionTest, AServiceThatReceivesNothingIsGivenUpInTime) {
    const auto connection = Open();
    const std::string huge(20u << 20, 'x');
    EXPECT_EQ(connection->Call({"i", "m", 0, 1, 0}, huge.data(), huge.size(), kShort, reply), Failure::Unresponsive);
}

TEST_F(DaemonConnectionTest, AServiceThatEndsInTheMiddleOfAReply) {
    const auto connection = Open();
    BeginReply();
    std::thread daemon([&] {
        serviceEnd->ReceivePacket();
        serviceEnd->Close();
    });
    EXPECT_EQ(connection->Call({"i", "m", 0, 1, 0}, nullptr, 0, kEnough, reply), Failure::Gone);
    daemon.join();
    EXPECT_EQ(reply.GetSize(), 0u);
}

TEST_F(DaemonConnectionTest, AServiceThatStallsInTheMiddleOfAReply) {
    const auto connection = Open();
    BeginReply();
    EXPECT_EQ(connection->Call({"i", "m", 0, 1, 0}, nullptr, 0, kShort, reply), Failure::Unresponsive);
    EXPECT_EQ(reply.GetSize(), 0u);
}

TEST_F(DaemonConnectionTest, AServiceThatEndedBeforeTheCall) {
    const auto connection = Open();
    serviceEnd->Close();
    EXPECT_EQ(Call(*connection, 1), Failure::NotSent);
}

TEST_F(DaemonConnectionTest, AServiceThatEndsInsteadOfReplying) {
    const auto connection = Open();
    std::thread daemon([&] {
        serviceEnd->ReceivePacket();
        serviceEnd->Close();
    });
    EXPECT_EQ(Call(*connection, 1), Failure::Gone);
    daemon.join();
}

TEST_F(DaemonConnectionTest, AReplyToAnEarlierCallIsIgnored) {
    const auto connection = Open();
    const std::string late(100000, 'l');
    std::thread daemon([&] {
        wire::Message message;
        ASSERT_TRUE(serviceEnd->Receive(message));
        serviceEnd->Send(wire::MessageKind::Reply, 4, late.data(), late.size());
        serviceEnd->Send(wire::MessageKind::Reply, 5, "late", 4);
        serviceEnd->Send(wire::MessageKind::Reply, 6, "right", 5);
    });
    EXPECT_EQ(connection->Call({"i", "m", 0, 6, 0}, nullptr, 0, kEnough, reply), Failure::None);
    daemon.join();
    EXPECT_EQ(std::string_view(static_cast<const char*>(reply.GetData()), reply.GetSize()), "right");
}

TEST_F(DaemonConnectionTest, MalformedAnswers) {
    const auto answer = [&](auto&& send) {
        const auto connection = Open();
        std::thread daemon([&] {
            serviceEnd->ReceivePacket();
            send();
        });
        const Failure failure = Call(*connection, 6);
        daemon.join();
        return failure;
    };
    EXPECT_EQ(answer([&] { serviceEnd->Send(wire::MessageKind::Reply, 7, nullptr, 0); }), Failure::Malformed)
        << "to a call that has not been made";
    EXPECT_EQ(answer([&] { serviceEnd->Send(wire::MessageKind::Welcome, 6, nullptr, 0); }), Failure::Malformed);
    EXPECT_EQ(answer([&] { serviceEnd->Send(wire::MessageKind::Signal, 6, nullptr, 0); }), Failure::Malformed);
    EXPECT_EQ(answer([&] { serviceEnd->SendRaw("x", 1); }), Failure::Malformed);
    const std::string long_(100000, 'x');
    EXPECT_EQ(answer([&] { serviceEnd->SendRaw(long_.data(), long_.size()); }), Failure::Malformed)
        << "longer than any packet";
}

TEST_F(DaemonConnectionTest, EachPacketOfAReplySaysWhetherMoreFollows) {
    const std::size_t full = wire::kMaxPacketPayload - wire::kMessageHeaderSize;
    for (const std::size_t treeSize : {std::size_t{3}, full, full + 3, 2 * full}) {
        std::vector<Packet> packets = PacketsOfReply(treeSize);
        for (Packet& lying : packets) {
            lying[3] ^= wire::kPacketMore;
            const auto connection = Open();
            for (const Packet& packet : packets)
                serviceEnd->SendRaw(packet.data(), packet.size());
            EXPECT_EQ(Call(*connection, 1), Failure::Malformed) << treeSize;
            lying[3] ^= wire::kPacketMore;
        }
    }
}

TEST_F(DaemonConnectionTest, SerialNumbersBeginAnewAfterTheLast) {
    const auto connection = Open();
    serviceEnd->Send(wire::MessageKind::Reply, 0xFFFFFFFF, nullptr, 0);
    serviceEnd->Send(wire::MessageKind::Reply, 1, nullptr, 0);
    EXPECT_EQ(Call(*connection, 1), Failure::None) << "the late answer is passed over";
}

TEST_F(DaemonConnectionTest, ASignalHandlerDoesNotEndTheWait) {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);
    const auto connection = Open();
    const pthread_t caller = pthread_self();
    std::thread daemon([&] {
        wire::Message message;
        ASSERT_TRUE(serviceEnd->Receive(message));
        for (int i = 0; i < 20; ++i) {
            pthread_kill(caller, SIGUSR1);
            std::this_thread::yield();
        }
        serviceEnd->Reply(message, 1);
    });
    EXPECT_EQ(Call(*connection, 1), Failure::None);
    daemon.join();
    sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(DaemonConnectionTest, PushedMessagesAreTakenWithoutWaiting) {
    const auto connection = Open();
    wire::Message message;
    EXPECT_EQ(connection->TakePushed(message), Failure::Unresponsive);
    serviceEnd->SendSignal(81, 1, 0, 5);
    serviceEnd->SendSignal(82, 1, 0, 5);
    EXPECT_EQ(connection->TakePushed(message), Failure::None);
    EXPECT_EQ(message.header.kind, wire::MessageKind::Signal);
    EXPECT_EQ(connection->TakePushed(message), Failure::None);
    EXPECT_EQ(connection->TakePushed(message), Failure::Unresponsive);
    serviceEnd->Close();
    EXPECT_EQ(connection->TakePushed(message), Failure::Gone);
}
