#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include <norvex/client/NorvexAPIConnection.h>

#include "Console.h"
#include "DebugPrintControlProxy.h"
#include "FakeConnection.h"
#include "FakeCore.h"
#include "NothrowNew.h"
#include "Timeline.h"

using FakeCore::Reply;

namespace {

using Calls = std::vector<std::string>;

// A proxy of its own for each test; the calls that it made so far are forgotten.
class Proxy : public testing::Test {
protected:
    Proxy() : m_control(std::make_unique<TCDebugPrintControlProxy>("com.example.IControl")) {
        Timeline::now().clear();
    }
    ~Proxy() override {
        EXPECT_EQ(FakeCore::helpersAlive(), 0);
        m_control.reset();
        EXPECT_EQ(FakeConnection::alive(), 0);
        FakeCore::reset();
    }

    IDebugPrintControl& control() { return *m_control; }
    // The one call made since the last question.
    static std::string call() {
        const Calls calls = Timeline::now().calls();
        Timeline::now().clear();
        return calls.size() == 1 ? calls[0] : std::to_string(calls.size()) + " calls";
    }

    std::unique_ptr<TCDebugPrintControlProxy> m_control;
};

TSMenuItem makeItem(const std::string& name, bool state, unsigned int id) {
    TSMenuItem item;
    item.setName(name);
    item.setState(state);
    item.setID(id);
    return item;
}

// Statuses that the other side may send: each is returned as it is.
const int kStatuses[] = {1, 2, 2147483647, 0, -1, -2, -2147483647 - 1};

} // namespace

TEST(DebugPrintControlProxy, OpensItsConnectionToTheSignalInterface) {
    Timeline::now().clear();
    {
        TCDebugPrintControlProxy proxy("com.example.IControl");
        EXPECT_EQ(Timeline::now().calls(),
                  Calls{"NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                        "/com/holvi/Norvex/SignalObject, true)"});
        Timeline::now().clear();
        EXPECT_EQ(FakeConnection::alive(), 1);
    }
    EXPECT_EQ(Timeline::now().calls(), Calls{"~NorvexAPIConnection"});
    EXPECT_EQ(FakeConnection::alive(), 0);
}

TEST(DebugPrintControlProxy, IsDeletedThroughItsInterface) {
    static_assert(std::has_virtual_destructor_v<IDebugPrintControl>);
    static_assert(std::has_virtual_destructor_v<NorvexAPIConnection>);
    IDebugPrintControl* control = new TCDebugPrintControlProxy("com.example.IControl");
    delete control;
    EXPECT_EQ(FakeConnection::alive(), 0);
}

TEST(DebugPrintControlProxy, WithoutMemoryForTheConnectionSaysSoAndCallsWithNone) {
    Console console;
    std::unique_ptr<TCDebugPrintControlProxy> proxy;
    console.run([&proxy] {
        NoMemory noMemory;
        proxy = std::make_unique<TCDebugPrintControlProxy>("com.example.IControl");
    });
    EXPECT_EQ(console.whole(),
              "{_TCApiAssert(m_pNorvexConnection, src/debugutil/DebugPrintControlProxy, 20, null)}"
              "ASSERT!!! - function TCDebugPrintControlProxy, line 20");

    Timeline::now().clear();
    std::string screen = "kept";
    EXPECT_EQ(proxy->Start(screen), -1);
    EXPECT_EQ(screen, "kept");
    EXPECT_EQ(Timeline::now().calls(),
              Calls{"Run(null, com.example.IControl, Start, 0, false; out value 4 = ffffffff; out "
                    "TCMarshalableString)"});
    EXPECT_FALSE(proxy->SetQoSEnabled(true));
    EXPECT_FALSE(proxy->IsQoSEnabled());
    EXPECT_TRUE(proxy->GetMenuItems().empty());

    Timeline::now().clear();
    proxy.reset();
    EXPECT_TRUE(Timeline::now().calls().empty());
}

TEST_F(Proxy, NameOfTheInterfaceIsCopied) {
    std::string name = "com.example.First";
    TCDebugPrintControlProxy proxy(name);
    name = "com.example.Second";
    Timeline::now().clear();
    proxy.Stop();
    EXPECT_EQ(call(), "Run(connection, com.example.First, Stop, 2, false; out value 4 = ffffffff)");
}

TEST_F(Proxy, StartIsMethod0AndFetchesStatusAndScreen) {
    FakeCore::answer("Start", Reply().value(1).text("first screen"));
    std::string screen = "old";
    EXPECT_EQ(control().Start(screen), 1);
    EXPECT_EQ(screen, "first screen");
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, Start, 0, false; out value 4 = "
                      "ffffffff; out TCMarshalableString)");
}

TEST_F(Proxy, StartReturnsTheRemoteStatusWhateverItIs) {
    for (const int status : kStatuses) {
        FakeCore::reset();
        FakeCore::answer("Start", Reply().value(status).text("s"));
        std::string screen;
        EXPECT_EQ(control().Start(screen), status);
        EXPECT_EQ(screen, "s");
    }
}

TEST_F(Proxy, StartOnAFailedExchangeIsMinus1AlsoWhenTheStatusWasWritten) {
    FakeCore::answer("Start", Reply().value(5).text("half a reply").failed());
    std::string screen = "old";
    EXPECT_EQ(control().Start(screen), -1);
    EXPECT_EQ(screen, "half a reply") << "what the reply wrote stands";
}

TEST_F(Proxy, StartWithoutAStatusInTheReplyIsMinus1) {
    FakeCore::answer("Start", Reply().nothing().text("screen"));
    std::string screen;
    EXPECT_EQ(control().Start(screen), -1);
    EXPECT_EQ(screen, "screen");
}

TEST_F(Proxy, EmptyScreenInTheReplyLeavesTheOldScreen) {
    FakeCore::answer("Start", Reply().value(1).text(""));
    FakeCore::answer("Execute", Reply().value(1).text(""));
    std::string screen = "still showing";
    EXPECT_EQ(control().Start(screen), 1);
    EXPECT_EQ(screen, "still showing");
    EXPECT_EQ(control().Execute("x", screen), 1);
    EXPECT_EQ(screen, "still showing");
}

TEST_F(Proxy, ExecuteIsMethod1AndSendsTheCommandBetweenStatusAndScreen) {
    FakeCore::answer("Execute", Reply().value(3).text("next"));
    std::string screen;
    EXPECT_EQ(control().Execute("help", screen), 3);
    EXPECT_EQ(screen, "next");
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, Execute, 1, false; out value 4 = "
                      "ffffffff; in TCMarshalableString {0=value 04000000, 1=bytes \"help\"}; out "
                      "TCMarshalableString)");
}

TEST_F(Proxy, ExecuteSends99LikeAnyOtherWord) {
    FakeCore::answer("Execute", Reply().value(1).text("still here"));
    std::string screen;
    EXPECT_EQ(control().Execute("99", screen), 1);
    EXPECT_EQ(screen, "still here");
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, Execute, 1, false; out value 4 = "
                      "ffffffff; in TCMarshalableString {0=value 02000000, 1=bytes \"99\"}; out "
                      "TCMarshalableString)");
}

TEST_F(Proxy, ExecuteReturnsTheRemoteStatusOrMinus1) {
    for (const int status : kStatuses) {
        FakeCore::reset();
        FakeCore::answer("Execute", Reply().value(status).text("s"));
        std::string screen;
        EXPECT_EQ(control().Execute("word", screen), status);
    }
    FakeCore::reset();
    FakeCore::answer("Execute", Reply().value(5).text("s").failed());
    std::string screen;
    EXPECT_EQ(control().Execute("word", screen), -1);
}

TEST_F(Proxy, ExecuteLeavesTheCommandAsItIs) {
    FakeCore::answer("Execute", Reply().value(1).text("s"));
    const std::string command = "word";
    std::string screen;
    control().Execute(command, screen);
    EXPECT_EQ(command, "word");
}

TEST_F(Proxy, StopIsMethod2) {
    FakeCore::answer("Stop", Reply().value(1));
    EXPECT_EQ(control().Stop(), 1);
    EXPECT_EQ(call(),
              "Run(connection, com.example.IControl, Stop, 2, false; out value 4 = ffffffff)");
}

TEST_F(Proxy, StopReturnsTheRemoteStatusOrMinus1) {
    for (const int status : kStatuses) {
        FakeCore::reset();
        FakeCore::answer("Stop", Reply().value(status));
        EXPECT_EQ(control().Stop(), status);
    }
    FakeCore::reset();
    FakeCore::answer("Stop", Reply().value(5).failed());
    EXPECT_EQ(control().Stop(), -1);
}

TEST_F(Proxy, CheckIsMethod3AndFetchesAValue) {
    FakeCore::answer("Check", Reply().value(1).value(-12345));
    int value = 7;
    EXPECT_EQ(control().Check(value), 1);
    EXPECT_EQ(value, -12345);
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, Check, 3, false; out value 4 = "
                      "ffffffff; out value 4 = 07000000)");
}

TEST_F(Proxy, CheckReturnsTheRemoteStatusOrMinus1) {
    for (const int status : kStatuses) {
        FakeCore::reset();
        FakeCore::answer("Check", Reply().value(status).value(1));
        int value = 0;
        EXPECT_EQ(control().Check(value), status);
    }
    FakeCore::reset();
    FakeCore::answer("Check", Reply().value(5).value(44).failed());
    int value = 7;
    EXPECT_EQ(control().Check(value), -1);
    EXPECT_EQ(value, 44) << "what the reply wrote stands";
    FakeCore::reset();
    value = 7;
    EXPECT_EQ(control().Check(value), -1);
    EXPECT_EQ(value, 7);
}

TEST_F(Proxy, GetMenuItemsIsMethod4AndGivesTheItemsInTheReplysOrder) {
    FakeCore::answer("GetMenuItems",
                     Reply().value(1).items({{"b", true, 2}, {"a", false, 1}, {"", true, 0}}));
    const std::vector<TSMenuItem> items = control().GetMenuItems();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].getName(), "b");
    EXPECT_TRUE(items[0].getState());
    EXPECT_EQ(items[0].getID(), 2u);
    EXPECT_EQ(items[1].getName(), "a");
    EXPECT_FALSE(items[1].getState());
    EXPECT_EQ(items[1].getID(), 1u);
    EXPECT_EQ(items[2].getName(), "");
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, GetMenuItems, 4, false; out value 4 = "
                      "ffffffff; out TCMarshalableOneDimensionContainer)");
}

TEST_F(Proxy, GetMenuItemsWithoutItemsIsEmpty) {
    FakeCore::answer("GetMenuItems", Reply().value(1).items({}));
    EXPECT_TRUE(control().GetMenuItems().empty());
    FakeCore::reset();
    EXPECT_TRUE(control().GetMenuItems().empty()) << "nothing came back";
}

TEST_F(Proxy, GetMenuItemsLooksNeitherAtTheStatusNorAtTheOutcome) {
    FakeCore::answer("GetMenuItems", Reply().value(-7).items({{"a", true, 1}}));
    EXPECT_EQ(control().GetMenuItems().size(), 1u);
    FakeCore::reset();
    FakeCore::answer("GetMenuItems", Reply().value(1).items({{"a", true, 1}}).failed());
    EXPECT_EQ(control().GetMenuItems().size(), 1u);
    FakeCore::reset();
    FakeCore::answer("GetMenuItems", Reply().nothing().items({{"a", true, 1}, {"b", true, 1}}));
    EXPECT_EQ(control().GetMenuItems().size(), 2u);
}

TEST_F(Proxy, SetMenuItemsIsMethod5AndSendsAllItems) {
    const std::vector<TSMenuItem> items{makeItem("x", true, 1), makeItem("", false, 256)};
    FakeCore::answer("SetMenuItems", Reply().value(1));
    EXPECT_TRUE(control().SetMenuItems(items));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetMenuItems, 5, false; out value 4 = "
                      "ffffffff; in TCMarshalableOneDimensionContainer "
                      "{0={0={0=value 01000000, 1=bytes \"x\"}, 1=value 01, 2=value 01000000}, "
                      "1={0={0=value 00000000}, 1=value 00, 2=value 00010000}})");
    EXPECT_EQ(items.size(), 2u) << "the caller keeps its items";
}

TEST_F(Proxy, SetMenuItemsOfNoneSendsAnEmptyBranch) {
    FakeCore::answer("SetMenuItems", Reply().value(1));
    EXPECT_TRUE(control().SetMenuItems({}));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetMenuItems, 5, false; out value 4 = "
                      "ffffffff; in TCMarshalableOneDimensionContainer {})");
}

TEST_F(Proxy, SetMenuItemIsMethod6AndSendsTheItem) {
    FakeCore::answer("SetMenuItem", Reply().value(1));
    EXPECT_TRUE(control().SetMenuItem(makeItem("Tune", true, 7)));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetMenuItem, 6, false; out value 4 = "
                      "ffffffff; in TSMenuItem {0={0=value 04000000, 1=bytes \"Tune\"}, "
                      "1=value 01, 2=value 07000000})");
}

TEST_F(Proxy, SetQoSEnabledIsMethod7AndSendsOneByte) {
    FakeCore::answer("SetQoSEnabled", Reply().value(1));
    EXPECT_TRUE(control().SetQoSEnabled(true));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetQoSEnabled, 7, false; out value 4 "
                      "= ffffffff; in value 1 = 01)");
    EXPECT_TRUE(control().SetQoSEnabled(false));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetQoSEnabled, 7, false; out value 4 "
                      "= ffffffff; in value 1 = 00)");
}

TEST_F(Proxy, SetDebugModeIsMethod9AndSendsModeAndState) {
    FakeCore::answer("SetDebugMode", Reply().value(1));
    EXPECT_TRUE(control().SetDebugMode(EDebugMode(0x0a0b0c0d), true));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetDebugMode, 9, false; out value 4 = "
                      "ffffffff; in value 4 = 0d0c0b0a; in value 1 = 01)");
    EXPECT_TRUE(control().SetDebugMode(EDebugMode(-1), false));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, SetDebugMode, 9, false; out value 4 = "
                      "ffffffff; in value 4 = ffffffff; in value 1 = 00)");
}

TEST_F(Proxy, SettersAnswerTheExchangeAndNotTheRemoteStatus) {
    const char* const methods[] = {"SetMenuItems", "SetMenuItem", "SetQoSEnabled", "SetDebugMode"};
    const auto callAll = [this] {
        return std::vector<bool>{control().SetMenuItems({}), control().SetMenuItem(TSMenuItem()),
                                 control().SetQoSEnabled(true),
                                 control().SetDebugMode(EDebugMode(1), true)};
    };
    for (const int status : kStatuses) {
        FakeCore::reset();
        for (const char* method : methods)
            FakeCore::answer(method, Reply().value(status));
        EXPECT_EQ(callAll(), std::vector<bool>(4, true)) << status;
        FakeCore::reset();
        for (const char* method : methods)
            FakeCore::answer(method, Reply().value(status).failed());
        EXPECT_EQ(callAll(), std::vector<bool>(4, false)) << status;
    }
    FakeCore::reset();
    for (const char* method : methods)
        FakeCore::answer(method, Reply().nothing());
    EXPECT_EQ(callAll(), std::vector<bool>(4, true)) << "no status came back";
}

TEST_F(Proxy, IsQoSEnabledIsMethod8AndFetchesOneByte) {
    FakeCore::answer("IsQoSEnabled", Reply().value(true));
    EXPECT_TRUE(control().IsQoSEnabled());
    EXPECT_EQ(call(),
              "Run(connection, com.example.IControl, IsQoSEnabled, 8, false; out value 1 = 00)");
    FakeCore::reset();
    FakeCore::answer("IsQoSEnabled", Reply().value(false));
    EXPECT_FALSE(control().IsQoSEnabled());
}

TEST_F(Proxy, IsDebugModeEnabledIsMethod10AndSendsTheModeAfterTheAnswer) {
    FakeCore::answer("IsDebugModeEnabled", Reply().value(true));
    EXPECT_TRUE(control().IsDebugModeEnabled(EDebugMode(258)));
    EXPECT_EQ(call(), "Run(connection, com.example.IControl, IsDebugModeEnabled, 10, false; out "
                      "value 1 = 00; in value 4 = 02010000)");
    FakeCore::reset();
    FakeCore::answer("IsDebugModeEnabled", Reply().value(false));
    EXPECT_FALSE(control().IsDebugModeEnabled(EDebugMode(258)));
}

TEST_F(Proxy, QueriesAreFalseWhenNoAnswerCameAndIgnoreTheOutcome) {
    EXPECT_FALSE(control().IsQoSEnabled());
    EXPECT_FALSE(control().IsDebugModeEnabled(EDebugMode(1)));
    FakeCore::answer("IsQoSEnabled", Reply().nothing());
    FakeCore::answer("IsDebugModeEnabled", Reply().nothing());
    EXPECT_FALSE(control().IsQoSEnabled());
    EXPECT_FALSE(control().IsDebugModeEnabled(EDebugMode(1)));
    FakeCore::reset();
    FakeCore::answer("IsQoSEnabled", Reply().value(true).failed());
    FakeCore::answer("IsDebugModeEnabled", Reply().value(true).failed());
    EXPECT_TRUE(control().IsQoSEnabled());
    EXPECT_TRUE(control().IsDebugModeEnabled(EDebugMode(1)));
}

TEST_F(Proxy, ARunOfCallsUsesOneConnectionAndAFreshHelperEach) {
    std::string screen;
    control().Start(screen);
    control().Execute("a", screen);
    control().Execute("b", screen);
    control().Stop();
    EXPECT_EQ(FakeCore::helpersAlive(), 0);
    EXPECT_EQ(FakeConnection::alive(), 1);
    EXPECT_EQ(
        Timeline::now().calls(),
        (Calls{"Run(connection, com.example.IControl, Start, 0, false; out value 4 = ffffffff; out "
               "TCMarshalableString)",
               "Run(connection, com.example.IControl, Execute, 1, false; out value 4 = ffffffff; "
               "in TCMarshalableString {0=value 01000000, 1=bytes \"a\"}; out TCMarshalableString)",
               "Run(connection, com.example.IControl, Execute, 1, false; out value 4 = ffffffff; "
               "in TCMarshalableString {0=value 01000000, 1=bytes \"b\"}; out TCMarshalableString)",
               "Run(connection, com.example.IControl, Stop, 2, false; out value 4 = ffffffff)"}));
}
