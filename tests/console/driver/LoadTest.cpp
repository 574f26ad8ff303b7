// What happens while the console is loaded and unloaded.

#include <cstdlib>
#include <type_traits>

#include <gtest/gtest.h>

#include "DebugMenu.h"
#include "FakeConnection.h"
#include "GstPluginDebug.h"
#include "QuarleDebugMenu.h"
#include "Timeline.h"

namespace {

// As it was before main.
std::vector<std::string> callsAtLoad;
std::vector<int> globalsAtLoad;

} // namespace

int main(int argc, char** argv) {
    callsAtLoad = Timeline::Now().Calls();
    globalsAtLoad = {currentMenu, QuarleLogonOff, StatusForquarleDebug, m_child_Pid};
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

TEST(Load, ConstructsTheTestConsoleAndThenTheSimpleMenuWithItsControl) {
    EXPECT_EQ(callsAtLoad,
              (std::vector<std::string>{"TCDebugMenuTPMS", "NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                                                           "/com/holvi/Norvex/SignalObject, true)"}));
    EXPECT_EQ(FakeConnection::CountAlive(), 1);
    EXPECT_EQ(globalsAtLoad, (std::vector<int>{0, 0, 0, 0}));
}

TEST(Load, TestConsoleNeedsNoDestructor) {
    static_assert(std::is_trivially_destructible_v<TCDebugMenuTPMS>);
    static_assert(!std::is_polymorphic_v<TCDebugMenuTPMS>);
    static_assert(!std::is_polymorphic_v<TCDebugMenuSimple>);
    static_assert(!std::is_trivially_destructible_v<TCDebugMenuSimple>);
}

TEST(LoadDeathTest, ControlIsReleasedOnceWhenTheProcessExits) {
    EXPECT_EXIT(
        {
            FakeConnection::TellEnd();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^connection closed\n$");
}
