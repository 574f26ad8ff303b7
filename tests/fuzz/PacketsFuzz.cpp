// What one connection carries: packets in any state become messages or end it. A message that was
// understood can be sent again and is understood as the same one; memory is taken as bytes come,
// not as a header announces them.

#include <wire/Message.h>
#include <wire/Packet.h>

#include "Packets.h"
#include "Require.h"

namespace {

void SendAgain(const wire::Message& message) {
    wire::PacketAssembler assembler;
    auto result = wire::PacketAssembler::Result::NeedMore;
    for (const Packet& packet :
         ToPackets(message.header, message.interfaceName, message.method, message.tree, message.header.treeSize)) {
        REQUIRE(result == wire::PacketAssembler::Result::NeedMore);
        result = assembler.Feed(packet.data(), packet.size());
    }
    REQUIRE(result == wire::PacketAssembler::Result::Complete);
    wire::Message again;
    REQUIRE(wire::ParseMessage(assembler.GetMessage().GetData(), assembler.GetMessage().GetSize(), again));
    REQUIRE(again.header.kind == message.header.kind);
    REQUIRE(again.header.methodId == message.header.methodId);
    REQUIRE(again.header.serial == message.header.serial);
    REQUIRE(again.header.session == message.header.session);
    REQUIRE(again.interfaceName == message.interfaceName);
    REQUIRE(again.method == message.method);
    REQUIRE(std::equal(again.tree, again.tree + again.header.treeSize, message.tree,
                       message.tree + message.header.treeSize));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kKeptMemory = 1u << 20;
    Input input(data, size);
    wire::PacketAssembler assembler;
    std::size_t fed = 0;
    while (!input.IsEmpty()) {
        for (const Packet& packet : TakePackets(input)) {
            const auto result = assembler.Feed(packet.data(), packet.size());
            fed += packet.size();
            REQUIRE(assembler.GetMessage().GetCapacity() <= 2 * fed + kKeptMemory);
            if (result == wire::PacketAssembler::Result::Malformed)
                return 0;
            REQUIRE(assembler.IsInMessage() == (result == wire::PacketAssembler::Result::NeedMore));
            if (result == wire::PacketAssembler::Result::NeedMore)
                continue;
            const wire::Buffer& bytes = assembler.GetMessage();
            wire::Message message;
            REQUIRE(wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message));
            REQUIRE(message.header.GetMessageSize() == bytes.GetSize());
            SendAgain(message);
        }
    }
    return 0;
}
