#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>
#include <unistd.h>
#include <wire/Packet.h>

#include "Context.h"
#include "DebugPrintControl.h"
#include "SessionInterface.h"

namespace {

using sim::Injection;
using wire::Direction;

NORVEX_INTERFACE(Fake, Set, Set_Text)

class FakeInterface : public sim::Interface {
public:
    FakeInterface() : Interface(interfaces::kTable<FakeMethod>, Calls::ToSession) {
        Add(FakeMethod::Set, {sim::Out("status", sim::kInt), sim::In("value", sim::kInt)},
            &FakeInterface::Set);
        Add(FakeMethod::Set_Text, {sim::Out("status", sim::kInt), sim::In("word", sim::kText)},
            &FakeInterface::SetWord);
    }
    std::vector<std::string> done;

private:
    void Set(const sim::Call&, const sim::ArgumentReader& in, sim::ReplyWriter& out) {
        done.push_back(std::to_string(in.Int(1)));
        out.Int(0, 1);
    }
    void SetWord(const sim::Call&, const sim::ArgumentReader& in, sim::ReplyWriter& out) {
        if (in.Text(1) == "throw")
            throw std::bad_alloc();
        done.emplace_back(in.Text(1));
        out.Int(0, 1);
    }
};

// A context whose calls come in over one connection.
class DispatcherTest : public testing::Test, private sim::Connection::Owner {
protected:
    DispatcherTest() {
        EXPECT_TRUE(m_database.Open("") && m_context.numbers.Prepare());
        m_log.SetSink([this](auto, std::string_view line) { m_lines.emplace_back(line); });
        m_context.Register<sim::SessionInterface>(m_context.dispatcher, m_context.sessions,
                                                  m_context.log);
        m_context.Register<sim::DebugPrintControl>(m_context, 0u);
        m_fake = &m_context.Register<FakeInterface>();
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends), 0);
        m_client = ends[1];
        Connection::Owner& owner = *this;
        m_connection = std::make_unique<sim::Connection>(ends[0], 1u, owner);
        m_connection->client = &m_context.clients.Connected(sim::Token{1});
        std::int32_t status = 0;
        m_session = m_context.sessions.Open(*m_fake, 1, 0, *m_connection->client, status)->id;
    }
    ~DispatcherTest() override { close(m_client); }
    using Connection = sim::Connection;

    // "Set" with a number.
    void Call(std::int32_t value, std::uint32_t session, std::int16_t method = 0) {
        m_tree.Clear();
        wire::TreeWriter tree(m_tree);
        tree.PutValue(0, std::int32_t{-1});
        tree.PutValue(1, value, Direction::In);
        Handle("com.holvi.IFake", "Set", method, session);
    }
    void Call(std::int32_t value) { Call(value, m_session); }
    void CallWord(std::string_view word) {
        m_tree.Clear();
        wire::TreeWriter tree(m_tree);
        tree.PutValue(0, std::int32_t{-1});
        tree.PutText(1, word, Direction::In);
        Handle("com.holvi.IFake", "Set", 1, m_session);
    }
    void Handle(const std::string& interface, const std::string& method, std::int16_t id,
                std::uint32_t session) {
        wire::Message message;
        message.header.kind = wire::MessageKind::Call;
        message.header.methodId = id;
        message.header.serial = ++m_serial;
        message.header.session = session;
        message.header.treeSize = static_cast<std::uint32_t>(m_tree.GetSize());
        message.interfaceName = interface;
        message.method = method;
        message.tree = m_tree.GetData();
        m_context.dispatcher.Handle(*m_connection, message);
    }
    // "1" for a reply with that status, "empty" for one without a tree, "" when there is none.
    std::string TakeReply() {
        char packet[1000];
        const ssize_t size = recv(m_client, packet, sizeof packet, MSG_DONTWAIT);
        if (size < 0)
            return "";
        if (size == 0)
            return "closed";
        wire::Message message;
        EXPECT_TRUE(wire::ParseMessage(packet + 4, static_cast<std::size_t>(size) - 4, message));
        EXPECT_EQ(message.header.kind, wire::MessageKind::Reply);
        EXPECT_EQ(message.header.serial, m_serial);
        wire::NodeCursor cursor(message.tree, message.header.treeSize);
        wire::Node node;
        std::int32_t status = 0;
        if (!cursor.Next(node))
            return "empty";
        EXPECT_TRUE(node.tag == 0 && node.Get(status));
        return std::to_string(status);
    }
    void Inject(Injection::Kind kind, std::int32_t number, unsigned calls) {
        for (const sim::Operation* method : m_context.dispatcher.FindOperations("IFake.Set"))
            m_context.injections.Add(*method, {kind, number}, calls);
    }
    bool Logged(const std::string& text) const {
        for (const std::string& line : m_lines) {
            if (line.find(text) != std::string::npos)
                return true;
        }
        return false;
    }

    sim::Database m_database;
    sim::Log m_log;
    sim::Context m_context{m_database, m_log};
    FakeInterface* m_fake = nullptr;
    std::uint32_t m_session = 0;
    std::vector<std::string> m_lines;
    std::string m_ended;
    std::unique_ptr<sim::Connection> m_connection;

private:
    void MessageArrived(sim::Connection&, const wire::Message&) override {}
    void ConnectionEnded(sim::Connection& connection, const std::string& why) override {
        m_ended = why;
        m_context.dispatcher.Forget(connection);
    }

    int m_client = -1;
    std::uint32_t m_serial = 0;
    wire::Buffer m_tree;
};

TEST_F(DispatcherTest, ACallReachesItsOperation) {
    Call(7);
    CallWord("word");
    EXPECT_EQ(m_fake->done, (std::vector<std::string>{"7", "word"}));
    EXPECT_EQ(m_context.journal.GetEnd(), 2u);
    EXPECT_EQ(m_context.journal.Describe(1)["arguments"][1]["value"], "word");
    EXPECT_EQ(m_context.journal.Describe(1)["results"][0]["value"], 1);
}

TEST_F(DispatcherTest, NumberAndNameBelongTogether) {
    for (const std::int16_t id : std::initializer_list<std::int16_t>{-1, 2, 32767}) {
        Call(7, m_session, id);
        EXPECT_EQ(TakeReply(), "empty");
    }
    Handle("com.holvi.IFake", "Get", 0, m_session);
    EXPECT_EQ(TakeReply(), "empty");
    Handle("com.holvi.INone", "Set", 0, m_session);
    EXPECT_EQ(TakeReply(), "empty");
    EXPECT_TRUE(m_fake->done.empty());
    EXPECT_TRUE(Logged("com.holvi.INone.Set (0): unknown operation"));
    EXPECT_EQ(m_context.journal.Describe(4)["fault"], "unknown operation");
}

TEST_F(DispatcherTest, ArgumentsThatMakeNoSenseAreRefused) {
    Call(7, m_session, 1);
    EXPECT_EQ(TakeReply(), "empty");
    EXPECT_TRUE(m_fake->done.empty());
    EXPECT_TRUE(Logged("#1 com.holvi.IFake.Set (1): argument 1 (word: text) is of another form"));
}

TEST_F(DispatcherTest, OnlySessionsOfTheClientAndTheInterfaceCount) {
    std::int32_t status = 0;
    const std::uint32_t foreign =
        m_context.sessions.Open(*m_fake, 1, 0, m_context.clients.Connected(sim::Token{2}), status)
            ->id;
    for (const std::uint32_t session : {0u, foreign, 77u}) {
        Call(7, session);
        EXPECT_EQ(TakeReply(), "empty") << session;
    }
    EXPECT_TRUE(m_fake->done.empty());
    EXPECT_TRUE(Logged("no session 77 of this client"));
}

TEST_F(DispatcherTest, AnOperationThatFailsIsAnsweredAllTheSame) {
    CallWord("throw");
    EXPECT_EQ(TakeReply(), "empty");
    EXPECT_TRUE(Logged("std::bad_alloc"));
    CallWord("word");
    EXPECT_EQ(TakeReply(), "1");
}

TEST_F(DispatcherTest, AnOrderedResultTakesTheOperationsPlaceForSoManyCalls) {
    Inject(Injection::Kind::Result, -7, 2);
    Call(1);
    EXPECT_EQ(TakeReply(), "-7");
    Call(2);
    EXPECT_EQ(TakeReply(), "-7");
    Call(3);
    EXPECT_EQ(TakeReply(), "1");
    // Each operation of the name has its own count.
    CallWord("word");
    EXPECT_EQ(TakeReply(), "-7");
    EXPECT_EQ(m_fake->done, std::vector<std::string>{"3"});
    EXPECT_EQ(m_context.journal.Describe(0)["injected"], "result");
    EXPECT_FALSE(m_context.journal.Describe(2).contains("injected"));
}

TEST_F(DispatcherTest, OrdersAreUsedUpInTurn) {
    Inject(Injection::Kind::Result, -7, 1);
    Inject(Injection::Kind::Drop, 0, 1);
    Call(1);
    EXPECT_EQ(TakeReply(), "-7");
    Call(2);
    EXPECT_EQ(TakeReply(), "");
    // It has happened all the same.
    EXPECT_EQ(m_fake->done, std::vector<std::string>{"2"});
    Call(3);
    EXPECT_EQ(TakeReply(), "1");
}

TEST_F(DispatcherTest, ADelayedReplyComesLate) {
    Inject(Injection::Kind::Delay, 1, 1);
    Call(1);
    EXPECT_EQ(m_fake->done, std::vector<std::string>{"1"});
    EXPECT_EQ(TakeReply(), "");
    std::string reply;
    while (reply.empty()) {
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
        reply = TakeReply();
    }
    EXPECT_EQ(reply, "1");
}

TEST_F(DispatcherTest, ADelayedReplyEndsWithItsConnection) {
    Inject(Injection::Kind::Delay, 1, 1);
    Call(1);
    m_connection->End({});
    EXPECT_EQ(TakeReply(), "closed");
    m_connection.reset();
    // A timer that began later passes: the reply's would have by then.
    bool passed = false;
    sim::Timer later;
    later.Start(1, [&] { passed = true; });
    while (!passed)
        sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::UntilReady);
}

TEST_F(DispatcherTest, AConnectionIsClosedByOrder) {
    Inject(Injection::Kind::Close, 0, 1);
    Call(1);
    EXPECT_EQ(TakeReply(), "closed");
    EXPECT_EQ(m_ended, "injected: close");
    EXPECT_TRUE(m_fake->done.empty());
}

TEST_F(DispatcherTest, ResetForgetsOrdersCountsAndCalls) {
    Inject(Injection::Kind::Result, -7, 5);
    Call(1);
    TakeReply();
    m_context.Reset();
    Call(2);
    EXPECT_EQ(TakeReply(), "1");
    EXPECT_EQ(m_context.journal.Describe(m_context.journal.GetBegin())["sequence"], 2);
    EXPECT_EQ(m_context.dispatcher.FindOperations("com.holvi.IFake.Set").front()->calls, 1u);
}

TEST_F(DispatcherTest, OperationsAreFoundByWhatPeopleType) {
    EXPECT_EQ(m_context.dispatcher.FindOperations("IFake.Set").size(), 2u);
    EXPECT_EQ(m_context.dispatcher.FindOperations("com.holvi.IDebugPrintControl.Stop").front()->id,
              2);
    EXPECT_EQ(m_context.dispatcher.FindOperations("IDebugPrintControl.Check").front()->id, 3);
    for (const char* name : {"", "IFake", "IFake.", "Set", "IFake.set", "IFake.Set.Set"})
        EXPECT_TRUE(m_context.dispatcher.FindOperations(name).empty()) << name;
}

} // namespace
