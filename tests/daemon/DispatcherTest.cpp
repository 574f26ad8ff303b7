#include <gtest/gtest.h>

#include "FakeInterface.h"
#include "TestTv.h"

namespace {

using namespace interfaces;
using sim::Injection;
using Events = std::vector<std::string>;

class DispatcherTest : public testing::Test {
public:
    DispatcherTest() {
        client.Do(FakeMethod::Set, 0); // opens the session
        fake.events.clear();
        tv.context.journal.Clear();
    }
    void Inject(Injection::Kind kind, std::int32_t number, unsigned calls) {
        for (const sim::Operation* operation : tv.context.dispatcher.FindOperations("IFake.Set"))
            tv.context.injections.Add(*operation, {kind, number}, calls);
    }
    std::int32_t Set(std::int32_t value) { return client.Do(FakeMethod::Set, value); }
    nlohmann::json DescribeLastCall() { return tv.context.journal.Describe(tv.context.journal.GetEnd() - 1); }

    TestTv tv;
    FakeInterface& fake = tv.context.Register<FakeInterface>();
    TestClient client{tv};
};

TEST_F(DispatcherTest, ACallReachesItsOperation) {
    EXPECT_EQ(Set(7), kDone);
    EXPECT_EQ(client.Do(FakeMethod::Set_Text, "text"), kDone);
    EXPECT_EQ(fake.events, (Events{"set 7", "set text"}));
    EXPECT_EQ(DescribeLastCall()["arguments"][1]["value"], "text");
    EXPECT_EQ(DescribeLastCall()["results"][0]["value"], 1);
}

TEST_F(DispatcherTest, NumberAndNameBelongTogether) {
    const std::uint32_t session = client.Open<FakeMethod>();
    const std::string name = fake.GetName();
    fake.events.clear();
    const auto isRefused = [&](std::string_view interface, std::string_view method, std::int16_t id) {
        const Reply reply = client.Exchange(interface, session, method, id, CallTree(7));
        return reply.HasCome() && !reply.Find(0);
    };
    EXPECT_FALSE(isRefused(name, "Set", 0));
    for (const std::int16_t id : std::initializer_list<std::int16_t>{-1, 2, 32767})
        EXPECT_TRUE(isRefused(name, "Set", id)) << id;
    EXPECT_TRUE(isRefused(name, "Get", 0));
    EXPECT_TRUE(isRefused(name + "d", "Set", 0));
    EXPECT_TRUE(tv.Logged("norvex", name + "d.Set (0): unknown operation"));
    EXPECT_EQ(DescribeLastCall()["fault"], "unknown operation");
    // As text: the operation of the same name with a number.
    EXPECT_TRUE(isRefused(name, "Set", 1));
    EXPECT_TRUE(tv.Logged("norvex", name + ".Set (1): argument 1 (text: text) has the wrong type"));
    EXPECT_EQ(fake.events, Events{"set 7"});
}

TEST_F(DispatcherTest, OnlySessionsOfTheClientAndTheInterfaceCount) {
    TestClient other(tv);
    const std::uint32_t foreign = other.Open<FakeMethod>();
    const std::uint32_t ofAnother = client.Open<TunerControlMethod>();
    fake.events.clear();
    for (const std::uint32_t session : {0u, foreign, ofAnother, 77u}) {
        const Reply reply = client.Exchange(fake.GetName(), session, "Set", 0, CallTree(7));
        EXPECT_TRUE(reply.HasCome() && !reply.Find(0)) << session;
    }
    EXPECT_EQ(fake.events, Events{});
    EXPECT_TRUE(tv.Logged("norvex", "this client has no session 77"));
}

TEST_F(DispatcherTest, AnOperationThatFailsIsAnsweredAllTheSame) {
    const Reply reply = client.Call(FakeMethod::Set_Text, "throw");
    EXPECT_TRUE(reply.HasCome() && !reply.Find(0));
    EXPECT_TRUE(tv.Logged("norvex", "it has failed"));
    EXPECT_EQ(client.Do(FakeMethod::Set_Text, "text"), kDone);
}

TEST_F(DispatcherTest, AnInjectedResultReplacesTheOperationForSoManyCalls) {
    Inject(Injection::Kind::Result, -7, 2);
    EXPECT_EQ(Set(1), -7);
    EXPECT_EQ(DescribeLastCall()["injected"], "result");
    EXPECT_EQ(Set(2), -7);
    EXPECT_EQ(Set(3), kDone);
    EXPECT_FALSE(DescribeLastCall().contains("injected"));
    // Each operation of this name has its own count.
    EXPECT_EQ(client.Do(FakeMethod::Set_Text, "text"), -7);
    EXPECT_EQ(fake.events, Events{"set 3"});
}

TEST_F(DispatcherTest, InjectionsAreUsedUpInTurn) {
    Inject(Injection::Kind::Result, -7, 1);
    Inject(Injection::Kind::Drop, 0, 1);
    EXPECT_EQ(Set(1), -7);
    EXPECT_FALSE(client.Call(FakeMethod::Set, 2).HasCome());
    EXPECT_EQ(fake.events, Events{"set 2"}); // it has been executed anyway
    EXPECT_EQ(Set(3), kDone);
}

TEST_F(DispatcherTest, ADelayedReplyComesLate) {
    Inject(Injection::Kind::Delay, 1, 1);
    EXPECT_FALSE(client.Call(FakeMethod::Set, 1).HasCome());
    EXPECT_EQ(fake.events, Events{"set 1"});
    Reply late{{}};
    tv.WaitUntil([&] { return (late = client.TakeReply()).HasCome(); });
    EXPECT_EQ(late.Status(), kDone);
}

TEST_F(DispatcherTest, ADelayedReplyEndsWithItsConnection) {
    Inject(Injection::Kind::Delay, 1, 1);
    client.Call(FakeMethod::Set, 1);
    client.Disconnect();
    // A timer that began later expires: the reply's would have by then.
    TestClient(tv).Die();
    client.Reconnect();
    EXPECT_FALSE(client.TakeReply().HasCome());
}

TEST_F(DispatcherTest, AnInjectionClosesTheConnection) {
    Inject(Injection::Kind::Close, 0, 1);
    EXPECT_FALSE(client.Call(FakeMethod::Set, 1).HasCome());
    EXPECT_EQ(client.GetEndReason(), "injected: close");
    EXPECT_EQ(fake.events, Events{});
}

TEST_F(DispatcherTest, AResetForgetsInjectionsCountsAndCalls) {
    Inject(Injection::Kind::Result, -7, 5);
    EXPECT_EQ(Set(1), -7);
    const std::uint64_t sequence = DescribeLastCall()["sequence"];
    tv.context.Reset();
    EXPECT_EQ(tv.context.journal.GetBegin(), tv.context.journal.GetEnd());
    EXPECT_EQ(Set(2), kDone);
    EXPECT_GT(DescribeLastCall()["sequence"], sequence);
    EXPECT_EQ(tv.context.dispatcher.FindOperations("IFake.Set").front()->calls, 1u);
}

TEST_F(DispatcherTest, OperationsAreFoundByWhatPeopleType) {
    const sim::Dispatcher& dispatcher = tv.context.dispatcher;
    EXPECT_EQ(dispatcher.FindOperations("IFake.Set").size(), 2u);
    EXPECT_EQ(dispatcher.FindOperations(fake.GetName() + ".Set").size(), 2u);
    EXPECT_EQ(dispatcher.FindOperations("IAVControl.MuteAudio").front()->id,
              static_cast<std::int16_t>(AVControlMethod::MuteAudio));
    for (const char* name : {"", "IFake", "IFake.", "Set", "IFake.set", "IFake.Set.Set"})
        EXPECT_TRUE(dispatcher.FindOperations(name).empty()) << name;
}

// An interface whose tests set the operations' handlers.
class IncompleteInterface : public sim::Interface {
public:
    explicit IncompleteInterface(const std::vector<FakeMethod>& handled)
        : Interface(kTable<FakeMethod>, Calls::ToSession) {
        for (const FakeMethod method : handled)
            Add(method, {sim::Out("status", sim::kInt)}, &IncompleteInterface::Handle);
    }

private:
    void Handle(const sim::Call&, const sim::ArgumentReader&, sim::ReplyWriter&) {}
};

std::string ErrorOf(const std::vector<FakeMethod>& handled) try {
    TestTv().context.Register<IncompleteInterface>(handled);
    return {};
} catch (const std::logic_error& error) {
    return error.what();
}

TEST(Interface, IsRefusedUnlessEachOperationHasOneHandler) {
    const std::string name(kTable<FakeMethod>.name);
    EXPECT_EQ(ErrorOf({FakeMethod::Set, FakeMethod::Set_Text}), "");
    EXPECT_EQ(ErrorOf({FakeMethod::Set}), name + ".Set has no handler");
    EXPECT_EQ(ErrorOf({}), name + ".Set has no handler");
    EXPECT_EQ(ErrorOf({FakeMethod::Set, FakeMethod::Set}), name + ".Set has two handlers");
}

} // namespace
