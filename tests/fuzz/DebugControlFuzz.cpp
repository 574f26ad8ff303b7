// A reply to each operation of the console's debug print control: the first byte chooses the
// operation, the rest is the reply's tree. A broken one is no answer; texts and items are bounded
// by what came.

#include <memory>

#include <interfaces/Interfaces.h>
#include <wire/Tree.h>

#include "DebugPrintControlProxy.h"
#include "Input.h"
#include "Replies.h"
#include "Require.h"

namespace {

constexpr int kOperations = static_cast<int>(interfaces::kTable<interfaces::DebugPrintControlMethod>.methodCount);

void Call(TCDebugPrintControlProxy& control, int operation, bool isReply, std::size_t size) {
    const std::string before = "before";
    std::string screen = before;
    int value = 5;
    std::vector<TSMenuItem> items(2);
    items[0].setName("name");
    switch (operation) {
    case 0:
        REQUIRE(control.Start(screen) == -1 || isReply);
        break;
    case 1:
        REQUIRE(control.Execute("word", screen) == -1 || isReply);
        break;
    case 2:
        REQUIRE(control.Check(value) == -1 || isReply);
        REQUIRE(value == 5 || isReply);
        break;
    case 3: {
        const std::vector<TSMenuItem> read = control.GetMenuItems();
        REQUIRE(read.size() <= size / wire::kNodeHeaderSize && (read.empty() || isReply));
        std::size_t length = 0;
        for (const TSMenuItem& item : read)
            length += item.getName().size() + (item.getState() ? 1 : 0);
        REQUIRE(length <= size);
        break;
    }
    case 4:
        REQUIRE(!control.SetMenuItems(items) || isReply);
        break;
    case 5:
        REQUIRE(!control.SetMenuItem(items[0]) || isReply);
        break;
    case 6:
        REQUIRE(!control.SetQoSEnabled(true) || isReply);
        break;
    case 7:
        REQUIRE(!control.IsQoSEnabled() || isReply);
        break;
    case 8:
        REQUIRE(!control.SetDebugMode(EDebugMode(1), true) || isReply);
        break;
    case 9:
        REQUIRE(!control.IsDebugModeEnabled(EDebugMode(1)) || isReply);
        break;
    default:
        REQUIRE(control.Stop() == -1 || isReply);
    }
    REQUIRE(screen == before || (isReply && screen.size() <= size));
    REQUIRE(items.size() == 2 && items[0].getName() == "name");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static TCDebugPrintControlProxy control(std::string(interfaces::kTable<interfaces::DebugPrintControlMethod>.name));
    Input input(data, size);
    const int operation = input.Byte() % kOperations;
    ReplyWith(input.Rest());
    Call(control, operation, wire::IsWellFormed(input.Rest().data(), input.Rest().size()), input.Rest().size());
    REQUIRE(GetReplyCount() == 1);
    return 0;
}
