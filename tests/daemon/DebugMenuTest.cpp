#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "Database.h"
#include "DebugDialogue.h"
#include "DebugSwitches.h"
#include "NumberStore.h"

namespace {

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

class DebugMenuTest : public testing::Test {
protected:
    DebugMenuTest() { EXPECT_TRUE(m_database.Open("") && m_numbers.Prepare()); }
    std::string Type(const std::string& command) {
        std::string screen;
        EXPECT_TRUE(m_dialogue.Execute(command, screen)) << command;
        return screen;
    }

    sim::Database m_database;
    sim::NumberStore m_numbers{m_database};
    sim::Log m_log;
    sim::DebugSwitches m_switches{m_numbers, m_log, 0};
    sim::DebugDialogue m_dialogue{m_switches};
};

TEST_F(DebugMenuTest, TheFirstScreenListsTheCommands) {
    EXPECT_FALSE(m_dialogue.IsOpen());
    EXPECT_EQ(m_dialogue.Open(), "\n"
                                 "====================================\n"
                                 "\t[Norvex]\n"
                                 "------------------------------------\n"
                                 " help   : the words of each screen\n"
                                 " status : what is switched on\n"
                                 " items  : debug menu items\n"
                                 " modes  : debug modes\n"
                                 " qos    : QoS switch\n"
                                 "------------------------------------\n"
                                 " 99 : Exit\n"
                                 "====================================\n"
                                 "norvex> ");
    EXPECT_TRUE(m_dialogue.IsOpen());
}

TEST_F(DebugMenuTest, EachScreenIsReachedByItsCommand) {
    m_dialogue.Open();
    for (const auto& [command, title] :
         std::vector<std::pair<std::string, std::string>>{{"status", "\t[Norvex status]\n"},
                                                          {"items", "\t[Norvex items]\n"},
                                                          {"modes", "\t[Norvex modes]\n"},
                                                          {"qos", "\t[Norvex QoS]\n"},
                                                          {"help", "\t[Norvex help]\n"},
                                                          {"main", "\t[Norvex]\n"}})
        EXPECT_TRUE(Holds(Type(command), title)) << command;
}

TEST_F(DebugMenuTest, ThereAreAtLeastTwelveItemsAllOff) {
    EXPECT_GE(m_switches.GetItems().size(), 12u);
    EXPECT_EQ(m_switches.CountOn(), 0);
}

TEST_F(DebugMenuTest, AnItemIsFlippedByItsNumberAndShown) {
    m_dialogue.Open();
    EXPECT_TRUE(Holds(Type("items"), " 103: [OFF] Channel change\n"));
    const std::string on = Type("103");
    EXPECT_TRUE(Holds(on, "\nChannel change is ON\n"));
    EXPECT_TRUE(Holds(on, " 103: [ON ] Channel change\n"));
    EXPECT_TRUE(m_switches.FindItem(103)->on);
    EXPECT_TRUE(Holds(Type("status"), " items on : 1 of 16\n"));
    Type("items");
    EXPECT_TRUE(Holds(Type("103"), " 103: [OFF] Channel change\n"));
    EXPECT_TRUE(Holds(Type("100"), "There is no item 100"));
    EXPECT_TRUE(Holds(Type("117"), "There is no item 117"));
}

TEST_F(DebugMenuTest, AllItemsAreSwitchedAtOnce) {
    m_dialogue.Open();
    Type("items");
    EXPECT_FALSE(Holds(Type("all"), "[OFF]"));
    EXPECT_EQ(m_switches.CountOn(), 16);
    EXPECT_FALSE(Holds(Type("none"), "[ON ]"));
    EXPECT_EQ(m_switches.CountOn(), 0);
}

TEST_F(DebugMenuTest, ModesAndQoSAreSwitched) {
    m_dialogue.Open();
    EXPECT_TRUE(Holds(Type("modes"), "   1: [OFF] timing\n"));
    EXPECT_TRUE(Holds(Type("1"), "   1: [ON ] timing\n"));
    EXPECT_TRUE(Holds(Type("9"), "There is no mode 9"));
    EXPECT_TRUE(Holds(Type("qos"), " QoS is OFF\n"));
    EXPECT_TRUE(Holds(Type("on"), " QoS is ON\n"));
    const std::string status = Type("status");
    EXPECT_TRUE(Holds(status, " modes on : timing\n"));
    EXPECT_TRUE(Holds(status, " QoS      : ON\n"));
    Type("qos");
    Type("off");
    EXPECT_FALSE(m_switches.IsQoSOn());
}

TEST_F(DebugMenuTest, AnUnknownCommandIsAnsweredOnTheSameScreen) {
    m_dialogue.Open();
    Type("modes");
    for (const char* command : {"foo", "on", "all", "-1", "1x", "99999999999"}) {
        const std::string screen = Type(command);
        EXPECT_TRUE(Holds(screen, "Unknown word \"" + std::string(command) + "\", try help")) << command;
        EXPECT_TRUE(Holds(screen, "\t[Norvex modes]\n"));
    }
    // Commands that would move the cursor or fill the screen are not shown literally.
    EXPECT_TRUE(Holds(Type("a\x1b[2J"), "\"a?[2J\""));
    EXPECT_LT(Type(std::string(10000, 'x')).size(), 1000u);
}

TEST_F(DebugMenuTest, NinetyNineLeaves) {
    m_dialogue.Open();
    Type("items");
    std::string screen;
    EXPECT_FALSE(m_dialogue.Execute("99", screen));
    EXPECT_FALSE(m_dialogue.IsOpen());
    // A reopened dialogue starts again.
    EXPECT_TRUE(Holds(m_dialogue.Open(), "\t[Norvex]\n"));
}

TEST_F(DebugMenuTest, ExtraItemsAreNamedAndNumbered) {
    m_switches.SetExtraItems(300);
    ASSERT_EQ(m_switches.GetItems().size(), 316u);
    EXPECT_EQ(m_switches.FindItem(117)->name, "Extra debug switch 00001");
    EXPECT_EQ(m_switches.FindItem(416)->name, "Extra debug switch 00300");
    m_dialogue.Open();
    EXPECT_TRUE(Holds(Type("items"), " ... up to 416\n"));
    EXPECT_TRUE(Holds(Type("416"), "Extra debug switch 00300 is ON"));
    m_switches.Reset();
    EXPECT_EQ(m_switches.GetItems().size(), 16u);
    EXPECT_EQ(m_switches.CountOn(), 0);
}

// The state that a second daemon loads from the file.
class StoredDebugSwitchesTest : public testing::Test {
protected:
    StoredDebugSwitchesTest() {
        char name[] = "/tmp/debug-switches-XXXXXX";
        const int file = mkstemp(name);
        EXPECT_GE(file, 0);
        close(file);
        m_path = name;
    }
    ~StoredDebugSwitchesTest() override {
        for (const char* end : {"", "-wal", "-journal"})
            unlink((m_path + end).c_str());
    }
    struct Run {
        explicit Run(const std::string& path) {
            EXPECT_TRUE(database.Open(path) && numbers.Prepare()) << database.GetError();
        }
        sim::Database database;
        sim::NumberStore numbers{database};
        sim::Log log;
    };

    std::string m_path;
};

TEST_F(StoredDebugSwitchesTest, SwitchesAreFoundAgain) {
    {
        Run run(m_path);
        sim::DebugSwitches switches(run.numbers, run.log, 0);
        EXPECT_TRUE(switches.SetItem(*switches.FindItem(103), true));
        EXPECT_TRUE(switches.SetItems({{101, true}, {116, true}}));
        EXPECT_TRUE(switches.SetItem(*switches.FindItem(101), false));
        EXPECT_TRUE(switches.SetQoS(true));
        EXPECT_TRUE(switches.SetMode(*switches.FindMode(2), true));
    }
    Run run(m_path);
    sim::DebugSwitches switches(run.numbers, run.log, 0);
    EXPECT_EQ(switches.CountOn(), 2);
    EXPECT_TRUE(switches.FindItem(103)->on);
    EXPECT_TRUE(switches.FindItem(116)->on);
    EXPECT_TRUE(switches.IsQoSOn());
    EXPECT_TRUE(switches.FindMode(2)->on);
    EXPECT_FALSE(switches.FindMode(1)->on);
    switches.Reset();
    sim::DebugSwitches again(run.numbers, run.log, 0);
    EXPECT_EQ(again.CountOn(), 0);
    EXPECT_FALSE(again.IsQoSOn());
}

TEST_F(StoredDebugSwitchesTest, ASwitchThatCannotBeStoredStaysAsItIs) {
    Run run(m_path);
    sim::DebugSwitches switches(run.numbers, run.log, 0);
    ASSERT_TRUE(run.database.Execute("PRAGMA query_only = ON"));
    EXPECT_FALSE(switches.SetItem(*switches.FindItem(103), true));
    EXPECT_FALSE(switches.SetItems({{101, true}}));
    EXPECT_FALSE(switches.SetQoS(true));
    EXPECT_FALSE(switches.SetMode(*switches.FindMode(1), true));
    EXPECT_EQ(switches.CountOn(), 0);
    EXPECT_FALSE(switches.IsQoSOn());
    EXPECT_FALSE(switches.FindMode(1)->on);
}

TEST_F(StoredDebugSwitchesTest, AFileServesOneDaemonAtATime) {
    Run run(m_path);
    sim::Database second;
    EXPECT_FALSE(second.Open(m_path));
    EXPECT_EQ(second.GetError(), "database is locked");
}

} // namespace
