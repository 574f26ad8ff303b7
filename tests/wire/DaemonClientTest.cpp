#include "DaemonClient.h"

#include <functional>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <interfaces/Interfaces.h>
#include <norvex/core/MessageBuffer.h>

#include "FakeService.h"
#include "LogWatch.h"

namespace {

using Calls = std::vector<std::string>;

// Of a session that had another number before.
const Calls kOpenedAgain{"Open 0", "Test 50", "Test 50", "Close 0"};

class DaemonClientTest : public testing::Test {
protected:
    explicit DaemonClientTest(const char* connect = "20000", const char* call = "20000")
        : connectLimit("NORVEX_CONNECT_LIMIT_MS", connect), callLimit("NORVEX_CALL_LIMIT_MS", call) {}

    Failure Call(SessionKey* callSession = nullptr) {
        TCMessageBuffer arguments;
        TCMessageBuffer reply;
        return daemon->Call({interfaceName, method, 0}, callSession, arguments, reply);
    }

    // Makes one call against a daemon that opens the session, where there is one, as its 40th. The
    // connection as the daemon has it.
    std::unique_ptr<FakeService::Connection> CallOnce(SessionKey* callSession, std::uint64_t epoch,
                                                      std::uint32_t client) {
        std::unique_ptr<FakeService::Connection> connection;
        std::thread serving([&] {
            connection = service.Accept();
            connection->Welcome(epoch, client);
            wire::Message message;
            for (bool isCall = false; !isCall;) {
                ASSERT_TRUE(connection->Receive(message));
                isCall = message.method != GetMethodName(interfaces::NorvexSessionMethod::Open);
                wire::Buffer tree;
                wire::TreeWriter writer(tree);
                writer.PutValue(0, std::int32_t{1});
                writer.PutValue(1, std::uint32_t{40});
                connection->Reply(message, tree);
            }
        });
        EXPECT_EQ(Call(callSession), Failure::None);
        serving.join();
        return connection;
    }

    // Runs `use`, then drops the client; the calls that a daemon has got by then, which numbers
    // sessions from 50.
    Calls CallsOf(std::uint64_t epoch, std::uint32_t client, const std::function<void()>& use) {
        Calls calls;
        std::thread serving([&] {
            const auto connection = service.Accept();
            connection->Welcome(epoch, client);
            calls = FakeService::Serve(*connection, 50);
        });
        use();
        daemon.reset();
        serving.join();
        return calls;
    }
    // The same of two calls of the session and its end, by a daemon that has taken the place of an
    // earlier one where it was the 40th.
    Calls CallsAfterRestart(std::uint64_t epoch, std::uint32_t client) {
        CallOnce(&session, 1, 4).reset();
        EXPECT_EQ(session.id, 40u);
        return CallsOf(epoch, client, [this] {
            EXPECT_EQ(Call(&session), Failure::None);
            EXPECT_EQ(Call(&session), Failure::None);
            daemon->Close(session);
        });
    }

    FakeService service;
    Variable connectLimit;
    Variable callLimit;
    std::shared_ptr<DaemonClient> daemon = DaemonClient::Find();
    std::string interfaceName = std::string(interfaces::kNamePrefix) + "ITest";
    std::string method = "Test";
    SessionKey session{interfaceName, 0, 0, 0, 0, 0};
};

// Welcomed, but then not answered in time.
constexpr int kShortLimit = 400;

class UnresponsiveDaemonTest : public DaemonClientTest {
protected:
    UnresponsiveDaemonTest() : DaemonClientTest("20000", std::to_string(kShortLimit).c_str()) {}
};

class UnwelcomingDaemonTest : public DaemonClientTest {
protected:
    UnwelcomingDaemonTest() : DaemonClientTest("50", "20000") {}
};

} // namespace

TEST_F(DaemonClientTest, IsSharedByAllWhoUseTheSameSocket) {
    EXPECT_EQ(DaemonClient::Find(), daemon);
    const FakeService other;
    EXPECT_NE(DaemonClient::Find(), daemon);
}

TEST_F(DaemonClientTest, AForkedProcessIsAClientOfItsOwn) {
    const auto connection = CallOnce(&session, 1, 4);
    const pid_t child = fork();
    if (child == 0)
        _exit(Call(&session) == Failure::None && Call(&session) == Failure::None ? 0 : 1);
    const auto ofChild = service.Accept();
    ofChild->Welcome(1, 5);
    EXPECT_NE(ofChild->helloToken, connection->helloToken);
    EXPECT_EQ(FakeService::Serve(*ofChild, 50), (Calls{"Open 0", "Test 50", "Test 50"}));
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    // The parent's own goes on as it was, and ends with it.
    std::thread serving([&] { EXPECT_EQ(FakeService::Serve(*connection), (Calls{"Test 40", "Close 0"})); });
    EXPECT_EQ(Call(&session), Failure::None);
    daemon->Close(session);
    daemon.reset();
    serving.join();
}

TEST_F(DaemonClientTest, LimitsThatAreNotNumbersCountAsNotSet) {
    for (const char* text : {"", "0", "-5", "1s", "99999999999", "abc"}) {
        const Variable variable("NORVEX_CALL_LIMIT_MS", text);
        EXPECT_EQ(Limits::Find().call.count(), 5000) << text;
    }
    const Variable variable("NORVEX_CONNECT_LIMIT_MS", "7");
    EXPECT_EQ(Limits::Find().connect.count(), 7);
}

TEST_F(DaemonClientTest, CallsOfOneThreadShareOneConnection) {
    const auto callTwice = [this] {
        EXPECT_EQ(Call(), Failure::None);
        EXPECT_EQ(Call(), Failure::None);
    };
    EXPECT_EQ(CallsOf(1, 1, callTwice).size(), 2u);
}

TEST_F(DaemonClientTest, ADaemonThatWasRestartedBetweenTwoCallsIsReachedByTheNext) {
    CallOnce(nullptr, 1, 1).reset();
    service.StopListening();
    EXPECT_EQ(Call(), Failure::Absent);
    service.Listen();
    EXPECT_EQ(CallsOf(2, 1, [&] { EXPECT_EQ(Call(), Failure::None); }).size(), 1u);
}

TEST_F(DaemonClientTest, AConnectionThatEndedWhileIdleCostsNoCall) {
    CallOnce(nullptr, 1, 1).reset();
    EXPECT_EQ(CallsOf(1, 1, [&] { EXPECT_EQ(Call(), Failure::None); }).size(), 1u);
}

TEST_F(DaemonClientTest, TwoConnectionsThatEndedWhileIdleCostNoCall) {
    std::thread far([&] {
        std::unique_ptr<FakeService::Connection> connections[2];
        wire::Message messages[2];
        for (int i = 0; i < 2; ++i) {
            connections[i] = service.Accept();
            connections[i]->Welcome();
            ASSERT_TRUE(connections[i]->Receive(messages[i]));
        }
        for (int i = 0; i < 2; ++i)
            connections[i]->Reply(messages[i], 1);
    });
    std::thread caller([&] { EXPECT_EQ(Call(), Failure::None); });
    EXPECT_EQ(Call(), Failure::None);
    caller.join();
    far.join();
    EXPECT_EQ(CallsOf(1, 1, [&] { EXPECT_EQ(Call(), Failure::None); }).size(), 1u);
}

TEST_F(UnresponsiveDaemonTest, AfterATimeoutEveryCallFailsAtOnceUntilTheHelloIsAnswered) {
    std::unique_ptr<FakeService::Connection> connection;
    std::unique_ptr<FakeService::Connection> probe;
    std::thread serving([&] {
        connection = service.Accept();
        connection->Welcome();
        probe = service.Accept(); // and no answer to its hello
    });
    EXPECT_EQ(Call(), Failure::Unresponsive);
    serving.join();
    const Deadline deadline{std::chrono::milliseconds(kShortLimit)};
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(Call(), Failure::Stalled);
    EXPECT_FALSE(deadline.HasPassed()) << "a hundred calls in less than one limit";
    std::thread answering([&] {
        probe->Welcome();
        FakeService::Serve(*probe);
    });
    Failure failure = Failure::Stalled;
    while (failure == Failure::Stalled)
        failure = Call();
    EXPECT_EQ(failure, Failure::None);
    daemon.reset();
    answering.join();
}

TEST_F(UnresponsiveDaemonTest, ADaemonThatLostOneReplyIsNotTakenForStalled) {
    std::thread serving([&] {
        const auto connection = service.Accept();
        connection->Welcome();
        connection->ReceivePacket();
        const auto next = service.Accept();
        next->Welcome();
        FakeService::Serve(*next);
    });
    EXPECT_EQ(Call(), Failure::Unresponsive);
    const Failure failure = Call();
    // A loaded machine may need longer than the probe waits.
    EXPECT_TRUE(failure == Failure::None || failure == Failure::Stalled);
    while (Call() == Failure::Stalled) {
    }
    daemon.reset();
    serving.join();
}

TEST_F(UnresponsiveDaemonTest, AStalledDaemonThatDiesIsAbsent) {
    std::unique_ptr<FakeService::Connection> connection;
    std::unique_ptr<FakeService::Connection> probe;
    std::thread serving([&] {
        connection = service.Accept();
        connection->Welcome();
        probe = service.Accept();
    });
    EXPECT_EQ(Call(), Failure::Unresponsive);
    serving.join();
    EXPECT_EQ(Call(), Failure::Stalled);
    service.StopListening();
    connection->Close();
    probe->Close();
    EXPECT_EQ(Call(), Failure::Absent);
}

TEST_F(UnwelcomingDaemonTest, AWelcomeThatDoesNotComeStallsToo) {
    EXPECT_EQ(Call(), Failure::Unresponsive) << "nobody has accepted";
    EXPECT_EQ(Call(), Failure::Stalled);
    EXPECT_EQ(Call(), Failure::Stalled);
    Failure failure = Failure::None;
    EXPECT_EQ(daemon->OpenSignals(1, failure), nullptr);
    EXPECT_EQ(failure, Failure::Stalled);
}

TEST_F(UnwelcomingDaemonTest, ASignalConnectionWithoutWelcomeLeavesAHelloToBeAnswered) {
    Failure failure = Failure::None;
    EXPECT_EQ(daemon->OpenSignals(1, failure), nullptr);
    EXPECT_EQ(failure, Failure::Unresponsive);
    const auto signals = service.Accept();
    const auto probe = service.Accept();
    probe->Welcome();
    std::thread serving([&] { FakeService::Serve(*probe); });
    EXPECT_EQ(Call(), Failure::None);
    daemon.reset();
    serving.join();
}

TEST_F(DaemonClientTest, EachFailureHasItsOwnLine) {
    const LogWatch log;
    for (const Failure failure : {Failure::Absent, Failure::Unresponsive, Failure::Stalled, Failure::Gone,
                                  Failure::Malformed, Failure::Foreign, Failure::Refused, Failure::None})
        daemon->Report(failure, interfaceName, method);
    std::vector<std::string> lines = log.GetLines();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_NE(lines[0].find("ITest.Test: the TV service is not running"), std::string::npos);
    EXPECT_NE(lines[1].find("the TV service is not responding"), std::string::npos);
    EXPECT_NE(lines[3].find("connection to the TV service lost"), std::string::npos);
    for (std::string& line : lines)
        line.erase(0, line.find(interfaceName));
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(std::unique(lines.begin(), lines.end()), lines.end());
}

TEST_F(DaemonClientTest, ASessionIsOpenedAgainInANewRun) {
    EXPECT_EQ(CallsAfterRestart(2, 4), kOpenedAgain);
}

TEST_F(DaemonClientTest, ASessionIsOpenedAgainWhereTheDaemonHasForgottenTheClient) {
    EXPECT_EQ(CallsAfterRestart(1, 5), kOpenedAgain);
}

TEST_F(DaemonClientTest, ASessionSurvivesAConnectionOfTheSameRun) {
    EXPECT_EQ(CallsAfterRestart(1, 4), (Calls{"Test 40", "Test 40", "Close 0"}));
}

TEST_F(DaemonClientTest, ASessionOfAnEarlierRunIsNotClosedInTheNext) {
    CallOnce(&session, 1, 4).reset();
    EXPECT_EQ(CallsOf(2, 4,
                      [this] {
                          EXPECT_EQ(Call(), Failure::None);
                          daemon->Close(session);
                      }),
              Calls{"Test 0"});
}

TEST_F(DaemonClientTest, ARefusedSessionTellsWhy) {
    std::thread serving([&] {
        const auto connection = service.Accept();
        connection->Welcome();
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        connection->Reply(message, -7);
        connection->AwaitEnd();
    });
    EXPECT_EQ(daemon->Open(session), Failure::Refused);
    EXPECT_EQ(session.status, -7);
    daemon.reset();
    serving.join();
}

TEST_F(DaemonClientTest, AnUnansweredOpeningOfASessionIsNotARefusal) {
    std::thread serving([&] {
        for (const bool hasStatus : {false, true}) {
            const auto connection = service.Accept();
            connection->Welcome();
            wire::Message message;
            ASSERT_TRUE(connection->Receive(message));
            wire::Buffer tree;
            if (hasStatus)
                wire::TreeWriter(tree).PutValue(0, std::int32_t{0});
            connection->Reply(message, tree);
            connection->AwaitEnd();
        }
    });
    EXPECT_EQ(daemon->Open(session), Failure::Malformed) << "neither status nor session";
    EXPECT_EQ(daemon->Open(session), Failure::Malformed) << "no session";
    EXPECT_EQ(session.generation, 0u);
    daemon.reset();
    serving.join();
}

TEST_F(DaemonClientTest, ThreadsCallAtTheSameTimeOnConnectionsOfTheirOwn) {
    std::thread serving([&] {
        const auto one = service.Accept();
        one->Welcome();
        wire::Message message;
        ASSERT_TRUE(one->Receive(message));
        const auto other = service.Accept();
        other->Welcome();
        wire::Message second;
        ASSERT_TRUE(other->Receive(second));
        // The later call is answered first.
        other->Reply(second, 1);
        one->Reply(message, 1);
        one->AwaitEnd();
        other->AwaitEnd();
    });
    Failure failure = Failure::Gone;
    std::thread caller([&] { failure = Call(); });
    EXPECT_EQ(Call(), Failure::None);
    caller.join();
    EXPECT_EQ(failure, Failure::None);
    daemon.reset();
    serving.join();
}
