// The console as a library that is loaded and unloaded.

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

void* OpenConsole() {
    void* library = dlopen(CONSOLE_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        ADD_FAILURE() << dlerror();
    return library;
}

Calls TakeCalls() {
    const Calls calls = Timeline::Now().Calls();
    Timeline::Now().Clear();
    return calls;
}

} // namespace

TEST(Unload, ClosingTheLibraryReleasesTheControlAndOpenedAgainItBeginsAnew) {
    Timeline::Now().Clear();
    for (int round = 0; round < 3; ++round) {
        void* library = OpenConsole();
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(TakeCalls(), (Calls{"TCDebugMenuTPMS", kOpened})) << round;
        EXPECT_EQ(FakeConnection::CountAlive(), 1);
        EXPECT_EQ(dlclose(library), 0);
        EXPECT_EQ(TakeCalls(), Calls{"~NorvexAPIConnection"}) << round;
        EXPECT_EQ(FakeConnection::CountAlive(), 0);
    }
}

TEST(Unload, EntryHasCLinkageAndCanBeCalledMoreThanOnce) {
    void* library = OpenConsole();
    ASSERT_NE(library, nullptr);
    Entry* entry = reinterpret_cast<Entry*>(dlsym(library, "zarn_startmaindebug"));
    ASSERT_NE(entry, nullptr);
    {
        Console console;
        console.Type("5 99 99").Run([entry] {
            entry();
            entry();
        });
        EXPECT_EQ(console.CountWordsLeft(), 0u);
        EXPECT_EQ(console.Calls().size(), 3u) << "the marker file's path twice, the test console";
    }
    Timeline::Now().Clear();
    dlclose(library);
    EXPECT_EQ(TakeCalls(), Calls{"~NorvexAPIConnection"});
}

TEST(UnloadDeathTest, LibraryThatStaysOpenReleasesTheControlAtTheProcesssExit) {
    EXPECT_EXIT(
        {
            FakeConnection::TellEnd();
            OpenConsole();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^connection closed\n$");
}
