// What happens while the console is loaded and unloaded.

#include <cstdlib>
#include <type_traits>

#include <gtest/gtest.h>

#include "DebugMenu.h"
#include "DriverTest.h"
#include "FakeConnection.h"

TEST(Load, ConstructsTheTestConsoleAndThenTheSimpleMenuWithItsControl) {
    EXPECT_EQ(callsAtLoad(),
              (std::vector<std::string>{"TCDebugMenuTPMS",
                                        "NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                                        "/com/holvi/Norvex/SignalObject, true)"}));
    EXPECT_EQ(FakeConnection::alive(), 1);
}

TEST(Load, GlobalsBeginAtZero) {
    EXPECT_EQ(globalsAtLoad(), "0 0 0 0");
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
            FakeConnection::tellEnd(true);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^connection closed\n$");
}
