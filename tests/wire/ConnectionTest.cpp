#include <thread>

#include <gtest/gtest.h>
#include <interfaces/Interfaces.h>
#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/core/MessageBuffer.h>

#include "FakeService.h"
#include "LogWatch.h"

namespace {

const std::string kInterface(interfaces::kTable<interfaces::DebugPrintControlMethod>.name);
const std::string kMethod(GetMethodName(interfaces::DebugPrintControlMethod::Start));

bool Exchange(NorvexAPIConnection& connection, TCMessageBuffer& reply) {
    TCMessageBuffer arguments;
    arguments.Append("\0\0\1\0\0\0\0\0", 8);
    return connection.Exchange(kInterface, kMethod, 0, false, arguments, reply);
}

} // namespace

TEST(Connection, MakingOneReachesNobodyAndWritesNothing) {
    const LogWatch log;
    const Variable socket("NORVEX_SOCKET", "/nowhere/norvex.sock");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    { const NorvexAPIConnection connection("signals", "/object", true); }
    EXPECT_TRUE(log.GetLines().empty());
    NorvexAPIConnection connection("signals", "/object", true);
    TCMessageBuffer reply;
    reply.Append("old", 3);
    EXPECT_FALSE(Exchange(connection, reply));
    EXPECT_EQ(reply.GetSize(), 0u);
    EXPECT_EQ(log.Count(kInterface + "." + kMethod + ": the TV service is not running"), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Connection, OnlyOneForCallsMakesCalls) {
    const FakeService service;
    NorvexAPIConnection connection("signals", "/object", false);
    TCMessageBuffer reply;
    EXPECT_FALSE(Exchange(connection, reply));
}

TEST(Connection, ACallGoesOutWithItsNamesAndComesBackWithItsTree) {
    FakeService service;
    std::thread daemon([&] {
        const auto connection = service.Accept();
        EXPECT_EQ(connection->Welcome(), wire::Role::Calls);
        wire::Message message;
        ASSERT_TRUE(connection->Receive(message));
        EXPECT_EQ(message.interfaceName, kInterface);
        EXPECT_EQ(message.method, kMethod);
        EXPECT_EQ(message.header.session, 0u);
        EXPECT_EQ(message.header.serial, 1u);
        EXPECT_EQ(message.header.treeSize, 8u);
        connection->Reply(message, 4);
        connection->AwaitEnd();
    });
    {
        NorvexAPIConnection connection("signals", "/object", true);
        TCMessageBuffer reply;
        EXPECT_TRUE(Exchange(connection, reply));
        EXPECT_EQ(reply.GetSize(), 12u);
    }
    daemon.join();
}
