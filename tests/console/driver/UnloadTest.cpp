// The console as a library that is opened and closed.

#include <cstdlib>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "Console.h"
#include "FakeConnection.h"
#include "Timeline.h"

namespace {

using Calls = std::vector<std::string>;
using Entry = void();

const char kOpened[] = "NorvexAPIConnection(com.holvi.Norvex.SignalIFace, "
                       "/com/holvi/Norvex/SignalObject, true)";

void* openConsole() {
    void* library = dlopen(CONSOLE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        ADD_FAILURE() << dlerror();
    return library;
}

Calls callsSinceLastAsked() {
    const Calls calls = Timeline::now().calls();
    Timeline::now().clear();
    return calls;
}

} // namespace

TEST(Unload, ClosingTheLibraryReleasesTheControl) {
    Timeline::now().clear();
    void* library = openConsole();
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(callsSinceLastAsked(), (Calls{"TCDebugMenuTPMS", kOpened}));
    EXPECT_EQ(FakeConnection::alive(), 1);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(callsSinceLastAsked(), Calls{"~NorvexAPIConnection"});
    EXPECT_EQ(FakeConnection::alive(), 0);
}

TEST(Unload, OpenedAgainItBeginsAnew) {
    Timeline::now().clear();
    for (int round = 0; round < 3; ++round) {
        void* library = openConsole();
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(callsSinceLastAsked(), (Calls{"TCDebugMenuTPMS", kOpened})) << round;
        dlclose(library);
        EXPECT_EQ(callsSinceLastAsked(), Calls{"~NorvexAPIConnection"}) << round;
    }
}

TEST(Unload, EntryHasCLinkageAndCanBeCalledMoreThanOnce) {
    void* library = openConsole();
    ASSERT_NE(library, nullptr);
    Entry* entry = reinterpret_cast<Entry*>(dlsym(library, "zarn_startmaindebug"));
    ASSERT_NE(entry, nullptr);
    {
        Console console;
        console.type("5 99 99").run([entry] {
            entry();
            entry();
        });
        EXPECT_EQ(console.wordsLeft(), 0u);
        EXPECT_EQ(console.calls().size(), 3u) << "the marker file's path twice, the test console";
    }
    Timeline::now().clear();
    dlclose(library);
    EXPECT_EQ(callsSinceLastAsked(), Calls{"~NorvexAPIConnection"});
}

TEST(UnloadDeathTest, LibraryThatStaysOpenReleasesTheControlAtTheProcesssExit) {
    EXPECT_EXIT(
        {
            FakeConnection::tellEnd(true);
            openConsole();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^connection closed\n$");
}
