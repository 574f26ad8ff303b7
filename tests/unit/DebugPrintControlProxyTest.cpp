#include "DebugPrintControlProxy.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>
#include <norvex/client/NorvexAPIConnection.h>

#include "Console.h"
#include "CoreWatch.h"
#include "FakeConnection.h"
#include "NothrowNew.h"
#include "TestItems.h"

using FakeConnection::Answer;
using FakeConnection::Reply;

namespace {

using Calls = std::vector<std::string>;

// The remote call of `method` as it arrives at the connection.
std::string Exchange(const std::string& method, int id, const std::string& arguments) {
    return "Exchange(com.example.IControl, " + method + ", " + std::to_string(id) + ", false; " + arguments + ")";
}

// A proxy of its own for each test; the calls that it made so far are forgotten.
class Proxy : public testing::Test {
protected:
    Proxy() : m_control(std::make_unique<TCDebugPrintControlProxy>("com.example.IControl")) { Timeline::Now().Clear(); }
    ~Proxy() override {
        m_control.reset();
        EXPECT_EQ(FakeConnection::CountAlive(), 0);
        FakeConnection::Reset();
        CoreWatch::Reset();
    }

    IDebugPrintControl& Control() { return *m_control; }
    // The one call made since the last question.
    static std::string Call() {
        const Calls calls = Timeline::Now().Calls();
        Timeline::Now().Clear();
        return calls.size() == 1 ? calls[0] : std::to_string(calls.size()) + " calls";
    }
    // From now on `method` is answered by `reply` alone.
    static void AnswerOnly(const std::string& method, const Reply& reply) {
        FakeConnection::Reset();
        Answer(method, reply);
    }

    std::unique_ptr<TCDebugPrintControlProxy> m_control;
};

// Statuses that the other side may send: each is returned as it is.
const int kStatuses[] = {1, 2, 2147483647, 0, -1, -2, -2147483647 - 1};

} // namespace

// Start, Execute, Check and Stop answer the remote status.
TEST_F(Proxy, StatusIsTheRemoteOneAndMinus1WithoutOneOrOnAFailedCall) {
    const auto callAll = [this](const Reply& reply) {
        FakeConnection::Reset();
        for (const char* method : {"Start", "Execute", "Check", "Stop"})
            Answer(method, reply);
        std::string screen;
        int value = 0;
        return std::vector<int>{Control().Start(screen), Control().Execute("word", screen), Control().Check(value),
                                Control().Stop()};
    };
    for (const int status : kStatuses)
        EXPECT_EQ(callAll(Reply().Value(status)), std::vector<int>(4, status));
    EXPECT_EQ(callAll(Reply().Nothing()), std::vector<int>(4, -1));
    EXPECT_EQ(callAll(Reply().Value(5).Failed()), std::vector<int>(4, -1));
    CoreWatch::FailRuns();
    EXPECT_EQ(callAll(Reply().Value(5)), std::vector<int>(4, -1)) << "the reply was read";
}

TEST(DebugPrintControlProxy, OpensItsConnectionToTheSignalInterface) {
    static_assert(std::has_virtual_destructor_v<IDebugPrintControl>);
    static_assert(std::has_virtual_destructor_v<NorvexAPIConnection>);
    Timeline::Now().Clear();
    IDebugPrintControl* control = new TCDebugPrintControlProxy("com.example.IControl");
    const std::string opened = "NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                               "/com/holvi/Norvex/SignalObject, true)";
    EXPECT_EQ(Timeline::Now().Calls(), Calls{opened});
    EXPECT_EQ(FakeConnection::CountAlive(), 1);
    delete control;
    EXPECT_EQ(Timeline::Now().Calls(), (Calls{opened, "~NorvexAPIConnection"}));
    EXPECT_EQ(FakeConnection::CountAlive(), 0);
}

TEST(DebugPrintControlProxy, WithoutMemoryForTheConnectionSaysSoAndFailsEachCall) {
    Console console;
    std::unique_ptr<TCDebugPrintControlProxy> proxy;
    console.Run([&proxy] {
        NoMemory noMemory;
        proxy = std::make_unique<TCDebugPrintControlProxy>("com.example.IControl");
    });
    EXPECT_EQ(console.Whole(), "{_TCApiAssert(m_pNorvexConnection, src/debugutil/DebugPrintControlProxy, 20, null)}"
                               "ASSERT!!! - function TCDebugPrintControlProxy, line 20");

    Timeline::Now().Clear();
    std::string screen = "kept";
    EXPECT_EQ(proxy->Start(screen), -1);
    EXPECT_EQ(screen, "kept");
    EXPECT_FALSE(proxy->SetQoSEnabled(true));
    EXPECT_FALSE(proxy->IsQoSEnabled());
    EXPECT_TRUE(proxy->GetMenuItems().empty());
    proxy.reset();
    EXPECT_EQ(Timeline::Now().Calls(), Calls{});
}

TEST_F(Proxy, NameOfTheInterfaceIsCopied) {
    std::string name = "com.example.First";
    TCDebugPrintControlProxy proxy(name);
    name = "com.example.Second";
    Timeline::Now().Clear();
    proxy.Stop();
    EXPECT_EQ(Call(), "Exchange(com.example.First, Stop, 2, false; out value ffffffff)");
}

TEST_F(Proxy, StartIsMethod0AndFetchesStatusAndScreen) {
    Answer("Start", Reply().Value(1).Text("first screen"));
    std::string screen = "old";
    EXPECT_EQ(Control().Start(screen), 1);
    EXPECT_EQ(screen, "first screen");
    EXPECT_EQ(Call(), Exchange("Start", 0, "out value ffffffff, out length"));
}

TEST_F(Proxy, ScreenStandsAlsoWhenTheCallFailedOrBroughtNoStatus) {
    std::string screen = "old";
    Answer("Start", Reply().Nothing().Text("screen"));
    EXPECT_EQ(Control().Start(screen), -1);
    EXPECT_EQ(screen, "screen");
    AnswerOnly("Start", Reply().Value(5).Text("half a reply"));
    CoreWatch::FailRuns();
    EXPECT_EQ(Control().Start(screen), -1);
    EXPECT_EQ(screen, "half a reply");
}

TEST_F(Proxy, EmptyScreenInTheReplyLeavesTheOldScreen) {
    Answer("Start", Reply().Value(1).Text(""));
    Answer("Execute", Reply().Value(1).Text(""));
    std::string screen = "still showing";
    EXPECT_EQ(Control().Start(screen), 1);
    EXPECT_EQ(screen, "still showing");
    EXPECT_EQ(Control().Execute("x", screen), 1);
    EXPECT_EQ(screen, "still showing");
}

TEST_F(Proxy, ExecuteIsMethod1AndSendsTheCommandBetweenStatusAndScreen) {
    Answer("Execute", Reply().Value(3).Text("next"));
    const std::string command = "help";
    std::string screen;
    EXPECT_EQ(Control().Execute(command, screen), 3);
    EXPECT_EQ(screen, "next");
    EXPECT_EQ(command, "help");
    EXPECT_EQ(Call(), Exchange("Execute", 1,
                               "out value ffffffff, in {0=value 04000000, 1=bytes \"help\"}, "
                               "out length"));
    EXPECT_EQ(Control().Execute("99", screen), 3) << "a word like any other";
    EXPECT_EQ(Call(), Exchange("Execute", 1,
                               "out value ffffffff, in {0=value 02000000, 1=bytes \"99\"}, "
                               "out length"));
}

TEST_F(Proxy, StopIsMethod2) {
    Answer("Stop", Reply().Value(1));
    EXPECT_EQ(Control().Stop(), 1);
    EXPECT_EQ(Call(), Exchange("Stop", 2, "out value ffffffff"));
}

TEST_F(Proxy, CheckIsMethod3AndFetchesAValue) {
    Answer("Check", Reply().Value(1).Value(-12345));
    int value = 7;
    EXPECT_EQ(Control().Check(value), 1);
    EXPECT_EQ(value, -12345);
    EXPECT_EQ(Call(), Exchange("Check", 3, "out value ffffffff, out value 07000000"));
    FakeConnection::Reset();
    EXPECT_EQ(Control().Check(value), -1);
    EXPECT_EQ(value, -12345) << "nothing came back";
    AnswerOnly("Check", Reply().Value(5).Value(44));
    CoreWatch::FailRuns();
    EXPECT_EQ(Control().Check(value), -1);
    EXPECT_EQ(value, 44) << "what the reply wrote stands";
}

TEST_F(Proxy, GetMenuItemsIsMethod4AndGivesTheItemsInTheReplysOrder) {
    Answer("GetMenuItems", Reply().Value(1).Items({{"b", true, 2}, {"a", false, 1}, {"", true, 0}}));
    const std::vector<TSMenuItem> items = Control().GetMenuItems();
    EXPECT_EQ(Call(), Exchange("GetMenuItems", 4, "out value ffffffff, out {}"));
    EXPECT_EQ(ToText(items), "b on 2, a off 1,  on 0");
    AnswerOnly("GetMenuItems", Reply().Value(1).Items({}));
    EXPECT_EQ(ToText(Control().GetMenuItems()), "");
    FakeConnection::Reset();
    EXPECT_EQ(ToText(Control().GetMenuItems()), "") << "nothing came back";
}

TEST_F(Proxy, GetMenuItemsLooksNeitherAtTheStatusNorAtTheOutcome) {
    Answer("GetMenuItems", Reply().Value(-7).Items({{"a", true, 1}}));
    EXPECT_EQ(ToText(Control().GetMenuItems()), "a on 1");
    AnswerOnly("GetMenuItems", Reply().Nothing().Items({{"a", true, 1}, {"b", true, 1}}));
    EXPECT_EQ(ToText(Control().GetMenuItems()), "a on 1, b on 1");
    CoreWatch::FailRuns();
    EXPECT_EQ(ToText(Control().GetMenuItems()), "a on 1, b on 1");
}

TEST_F(Proxy, SetMenuItemsIsMethod5AndSendsAllItems) {
    const std::vector<TSMenuItem> items{MakeItem("x", true, 1), MakeItem("", false, 256)};
    Answer("SetMenuItems", Reply().Value(1));
    EXPECT_TRUE(Control().SetMenuItems(items));
    EXPECT_EQ(Call(), Exchange("SetMenuItems", 5,
                               "out value ffffffff, in "
                               "{0={0={0=value 01000000, 1=bytes \"x\"}, 1=value 01, 2=value 01000000}, "
                               "1={0={0=value 00000000}, 1=value 00, 2=value 00010000}}"));
    EXPECT_EQ(items.size(), 2u) << "the caller keeps its items";
    EXPECT_TRUE(Control().SetMenuItems({}));
    EXPECT_EQ(Call(), Exchange("SetMenuItems", 5, "out value ffffffff, in {}"));
}

TEST_F(Proxy, SetMenuItemIsMethod6AndSendsTheItem) {
    Answer("SetMenuItem", Reply().Value(1));
    EXPECT_TRUE(Control().SetMenuItem(MakeItem("Tune", true, 7)));
    EXPECT_EQ(Call(), Exchange("SetMenuItem", 6,
                               "out value ffffffff, in {0={0=value 04000000, 1=bytes \"Tune\"}, "
                               "1=value 01, 2=value 07000000}"));
}

TEST_F(Proxy, SetQoSEnabledIsMethod7AndSendsOneByte) {
    Answer("SetQoSEnabled", Reply().Value(1));
    EXPECT_TRUE(Control().SetQoSEnabled(true));
    EXPECT_EQ(Call(), Exchange("SetQoSEnabled", 7, "out value ffffffff, in value 01"));
    EXPECT_TRUE(Control().SetQoSEnabled(false));
    EXPECT_EQ(Call(), Exchange("SetQoSEnabled", 7, "out value ffffffff, in value 00"));
}

TEST_F(Proxy, IsQoSEnabledIsMethod8AndFetchesOneByte) {
    Answer("IsQoSEnabled", Reply().Value(true));
    EXPECT_TRUE(Control().IsQoSEnabled());
    EXPECT_EQ(Call(), Exchange("IsQoSEnabled", 8, "out value 00"));
    AnswerOnly("IsQoSEnabled", Reply().Value(false));
    EXPECT_FALSE(Control().IsQoSEnabled());
}

TEST_F(Proxy, SetDebugModeIsMethod9AndSendsModeAndState) {
    Answer("SetDebugMode", Reply().Value(1));
    EXPECT_TRUE(Control().SetDebugMode(EDebugMode(0x0a0b0c0d), true));
    EXPECT_EQ(Call(), Exchange("SetDebugMode", 9, "out value ffffffff, in value 0d0c0b0a, in value 01"));
    EXPECT_TRUE(Control().SetDebugMode(EDebugMode(-1), false));
    EXPECT_EQ(Call(), Exchange("SetDebugMode", 9, "out value ffffffff, in value ffffffff, in value 00"));
}

TEST_F(Proxy, IsDebugModeEnabledIsMethod10AndSendsTheModeAfterTheAnswer) {
    Answer("IsDebugModeEnabled", Reply().Value(true));
    EXPECT_TRUE(Control().IsDebugModeEnabled(EDebugMode(258)));
    EXPECT_EQ(Call(), Exchange("IsDebugModeEnabled", 10, "out value 00, in value 02010000"));
    AnswerOnly("IsDebugModeEnabled", Reply().Value(false));
    EXPECT_FALSE(Control().IsDebugModeEnabled(EDebugMode(258)));
}

TEST_F(Proxy, SettersAnswerTheExchangeAndNotTheRemoteStatus) {
    const char* const methods[] = {"SetMenuItems", "SetMenuItem", "SetQoSEnabled", "SetDebugMode"};
    const auto callAll = [&](const Reply& reply) {
        FakeConnection::Reset();
        for (const char* method : methods)
            Answer(method, reply);
        return std::vector<bool>{Control().SetMenuItems({}), Control().SetMenuItem(TSMenuItem()),
                                 Control().SetQoSEnabled(true), Control().SetDebugMode(EDebugMode(1), true)};
    };
    for (const int status : kStatuses) {
        EXPECT_EQ(callAll(Reply().Value(status)), std::vector<bool>(4, true)) << status;
        EXPECT_EQ(callAll(Reply().Value(status).Failed()), std::vector<bool>(4, false)) << status;
    }
    EXPECT_EQ(callAll(Reply().Nothing()), std::vector<bool>(4, true)) << "no status came back";
}

TEST_F(Proxy, QueriesAreFalseWhenNoAnswerCameAndIgnoreTheOutcome) {
    const auto expectBoth = [this](bool answer) {
        EXPECT_EQ(Control().IsQoSEnabled(), answer);
        EXPECT_EQ(Control().IsDebugModeEnabled(EDebugMode(1)), answer);
    };
    expectBoth(false);
    AnswerOnly("IsQoSEnabled", Reply().Nothing());
    Answer("IsDebugModeEnabled", Reply().Nothing());
    expectBoth(false);
    AnswerOnly("IsQoSEnabled", Reply().Value(true));
    Answer("IsDebugModeEnabled", Reply().Value(true));
    CoreWatch::FailRuns();
    expectBoth(true);
}

TEST_F(Proxy, ARunOfCallsUsesOneConnection) {
    std::string screen;
    Control().Start(screen);
    Control().Execute("a", screen);
    Control().Execute("b", screen);
    Control().Stop();
    EXPECT_EQ(FakeConnection::CountAlive(), 1);
    const auto execute = [](const std::string& word) {
        return Exchange("Execute", 1,
                        "out value ffffffff, in {0=value 01000000, 1=bytes \"" + word + "\"}, out length");
    };
    EXPECT_EQ(Timeline::Now().Calls(), (Calls{Exchange("Start", 0, "out value ffffffff, out length"), execute("a"),
                                              execute("b"), Exchange("Stop", 2, "out value ffffffff")}));
}
