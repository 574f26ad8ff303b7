// A connection's packets: the input is cut at its length bytes, each piece is a packet. Whatever
// comes out as a message is walked to its last node.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <wire/Packet.h>
#include <wire/Tree.h>

namespace {

std::size_t Walk(wire::NodeCursor cursor, int depth) {
    if (depth > wire::kMaxDepth + 1)
        std::abort();
    std::size_t sum = 0;
    wire::Node node;
    while (cursor.Next(node)) {
        std::string_view text;
        if (wire::GetText(node, text))
            sum += text.size();
        for (const char byte : node.GetBytes())
            sum += static_cast<unsigned char>(byte);
        if (node.IsBranch())
            sum += Walk(wire::NodeCursor(node), depth + 1);
    }
    return sum;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    wire::PacketAssembler assembler;
    while (size >= 2) {
        std::size_t length = data[0] | std::size_t{data[1]} << 8;
        data += 2;
        size -= 2;
        length = length < size ? length : size;
        const auto result = assembler.Feed(data, length);
        data += length;
        size -= length;
        if (result == wire::PacketAssembler::Result::Malformed)
            break;
        if (result == wire::PacketAssembler::Result::NeedMore)
            continue;
        const wire::Buffer& bytes = assembler.GetMessage();
        wire::Message message;
        if (!wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message))
            std::abort();
        if (wire::IsWellFormed(message.tree, message.header.treeSize))
            Walk({message.tree, message.header.treeSize}, 0);
    }
    return 0;
}
