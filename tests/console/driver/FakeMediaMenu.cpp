#include "FakeMediaMenu.h"

#include "Timeline.h"

namespace {

std::optional<int> given;

} // namespace

void FakeMediaMenu::answer(std::optional<int> result) {
    given = result;
}

// The linker's names for calls of GstPluginDebugFunction and for the function itself.
extern "C" int realMediaMenu() __asm__("__real__Z22GstPluginDebugFunctionv");
extern "C" int wrappedMediaMenu() __asm__("__wrap__Z22GstPluginDebugFunctionv");

int wrappedMediaMenu() {
    if (!given)
        return realMediaMenu();
    Timeline::now().call("GstPluginDebugFunction");
    return *given;
}
