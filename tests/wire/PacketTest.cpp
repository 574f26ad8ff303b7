#include <vector>

#include <gtest/gtest.h>
#include <wire/Tree.h>

#include "MessagePackets.h"

namespace {

using Result = wire::PacketAssembler::Result;

std::vector<Packet> PacketsOf(std::size_t treeSize) {
    Packet tree(treeSize);
    for (std::size_t i = 0; i < treeSize; ++i)
        tree[i] = static_cast<unsigned char>(i * 7);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    return ToPackets(header, "interface", "method", tree.data(), tree.size());
}

Result Feed(wire::PacketAssembler& assembler, const Packet& packet) {
    return assembler.Feed(packet.data(), packet.size());
}

constexpr std::size_t kBeforeTree = wire::kMessageHeaderSize + 9 + 6;

} // namespace

TEST(Packet, MessagesOfAnyLengthComeBackWhole) {
    constexpr std::size_t kFull = wire::kMaxPacketPayload;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, kFull - kBeforeTree - 1, kFull - kBeforeTree, kFull - kBeforeTree + 1,
          2 * kFull - kBeforeTree, 2 * kFull - kBeforeTree + 1, std::size_t{1} << 20}) {
        SCOPED_TRACE(size);
        const std::vector<Packet> packets = PacketsOf(size);
        EXPECT_EQ(packets.size(), std::max<std::size_t>(1, (size + kBeforeTree + kFull - 1) / kFull));
        wire::PacketAssembler assembler;
        for (std::size_t i = 0; i < packets.size(); ++i) {
            EXPECT_LE(packets[i].size(), wire::kPacketHeaderSize + kFull);
            EXPECT_EQ(Feed(assembler, packets[i]), i + 1 < packets.size() ? Result::NeedMore : Result::Complete);
        }
        wire::Message message;
        const wire::Buffer& bytes = assembler.GetMessage();
        ASSERT_TRUE(wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message));
        EXPECT_EQ(message.interfaceName, "interface");
        EXPECT_EQ(message.method, "method");
        ASSERT_EQ(message.header.treeSize, size);
        for (std::size_t i = 0; i < size; ++i)
            ASSERT_EQ(message.tree[i], static_cast<unsigned char>(i * 7)) << i;
    }
}

TEST(Packet, OneMessageAfterTheOther) {
    wire::PacketAssembler assembler;
    for (int i = 0; i < 3; ++i) {
        for (const Packet& packet : PacketsOf(100000))
            EXPECT_NE(Feed(assembler, packet), Result::Malformed);
        EXPECT_EQ(assembler.GetMessage().GetSize(), kBeforeTree + 100000);
    }
}

TEST(Packet, AMissingPacketIsNoticed) {
    const std::vector<Packet> packets = PacketsOf(200000);
    ASSERT_EQ(packets.size(), 4u);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packets[0]), Result::NeedMore);
    EXPECT_EQ(Feed(assembler, packets[3]), Result::Malformed);
}

TEST(Packet, AShortPacketOfWhichMoreFollowsIsRefused) {
    Packet first = PacketsOf(200000)[0];
    first.resize(1000);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, first), Result::Malformed);
}

TEST(Packet, AMessageOfAnUnknownKindIsRefused) {
    for (const int kind : {0, 7, 255}) {
        Packet packet = PacketsOf(16)[0];
        packet[wire::kPacketHeaderSize] = static_cast<unsigned char>(kind);
        wire::PacketAssembler assembler;
        EXPECT_EQ(Feed(assembler, packet), Result::Malformed) << kind;
    }
}

TEST(Packet, ReservedBytesAreZero) {
    for (const std::size_t place : {1, 20, 21, 22, 23}) {
        Packet packet = PacketsOf(16)[0];
        packet[wire::kPacketHeaderSize + place] = 1;
        wire::PacketAssembler assembler;
        EXPECT_EQ(Feed(assembler, packet), Result::Malformed) << place;
    }
}

TEST(Packet, OnlyTheArgumentsOfACallHaveADirection) {
    for (const auto direction : {wire::Direction::Out, wire::Direction::In}) {
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        const std::size_t branch = writer.BeginBranch(0);
        writer.PutValue(0, 1, direction);
        writer.EndBranch(branch);
        EXPECT_EQ(wire::IsWellFormed(tree.GetData(), tree.GetSize()), direction == wire::Direction::Out);
    }
}

TEST(Packet, ThereAreFourKindsOfNodes) {
    for (int kind = 0; kind <= 255; ++kind) {
        const unsigned char node[] = {0, 0, static_cast<unsigned char>(kind), 0, 0, 0, 0, 0};
        EXPECT_EQ(wire::IsWellFormed(node, sizeof node), kind >= 1 && kind <= 4) << kind;
    }
}

TEST(Packet, NamesHaveUpTo255Bytes) {
    const auto isTaken = [](std::uint16_t interfaceSize, std::uint16_t methodSize) {
        wire::MessageHeader header;
        header.interfaceSize = interfaceSize;
        header.methodSize = methodSize;
        unsigned char bytes[wire::kMessageHeaderSize];
        wire::EncodeMessageHeader(bytes, header);
        return wire::DecodeMessageHeader(bytes, sizeof bytes, header);
    };
    EXPECT_TRUE(isTaken(255, 255));
    EXPECT_FALSE(isTaken(256, 255));
    EXPECT_FALSE(isTaken(255, 256));
}

TEST(Packet, ALengthOverTheLimitIsRefusedBeforeMemoryIsTaken) {
    Packet packet = PacketsOf(16)[0];
    const std::uint32_t tooLong = wire::kMaxTreeSize + 1;
    std::copy_n(reinterpret_cast<const unsigned char*>(&tooLong), 4, packet.begin() + 4 + 16);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packet), Result::Malformed);
    EXPECT_EQ(assembler.GetMessage().GetCapacity(), 0u);
}

TEST(Packet, AnnouncedLengthsTakeNoMemoryAhead) {
    Packet packet = PacketsOf(200000)[0];
    const std::uint32_t longest = wire::kMaxTreeSize;
    std::copy_n(reinterpret_cast<const unsigned char*>(&longest), 4, packet.begin() + 4 + 16);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packet), Result::NeedMore);
    EXPECT_LT(assembler.GetMessage().GetCapacity(), std::size_t{1} << 20);
}

TEST(Packet, ForeignPacketAreRefused) {
    wire::PacketAssembler assembler;
    EXPECT_EQ(assembler.Feed("", 0), Result::Malformed);
    EXPECT_EQ(assembler.Feed("GET / HTTP/1.1\r\n\r\n    ", 22), Result::Malformed);
    for (std::size_t i = 0; i < wire::kPacketHeaderSize; ++i) {
        Packet packet = PacketsOf(16)[0];
        packet[i] ^= 0x80;
        EXPECT_EQ(Feed(assembler, packet), Result::Malformed) << i;
    }
}

// All packets but the last are full and say that more follows; the last one says that it is.
TEST(Packet, TheFlagSaysWhetherMoreFollows) {
    constexpr std::size_t kFull = wire::kMaxPacketPayload;
    for (const std::size_t size : {kFull, kFull + 1, 2 * kFull, 2 * kFull + 1}) {
        const std::vector<Packet> packets = PacketsOf(size - kBeforeTree);
        std::size_t sum = 0;
        for (const Packet& packet : packets) {
            const std::size_t payload = packet.size() - wire::kPacketHeaderSize;
            sum += payload;
            EXPECT_EQ(packet[3], sum < size ? wire::kPacketMore : 0);
            EXPECT_EQ(payload, sum < size ? kFull : size - (packets.size() - 1) * kFull);
        }
        EXPECT_EQ(sum, size);

        Packet last = packets.back();
        last[3] ^= wire::kPacketMore;
        wire::PacketAssembler assembler;
        for (std::size_t i = 0; i + 1 < packets.size(); ++i)
            EXPECT_EQ(Feed(assembler, packets[i]), Result::NeedMore);
        EXPECT_EQ(Feed(assembler, last), Result::Malformed) << "more, of a message that is whole";
    }
}

TEST(Packet, AFirstPacketWithoutTheFlagIsTheWholeMessage) {
    Packet first = PacketsOf(100000)[0];
    first[3] = 0;
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, first), Result::Malformed);
}

TEST(Packet, AMessageCutAtAnyByteIsRefused) {
    const Packet packet = PacketsOf(40)[0];
    for (std::size_t size = 0; size < packet.size(); ++size) {
        wire::PacketAssembler assembler;
        EXPECT_EQ(assembler.Feed(packet.data(), size), Result::Malformed) << size;
        wire::Message message;
        if (size >= wire::kPacketHeaderSize) {
            EXPECT_FALSE(
                wire::ParseMessage(packet.data() + wire::kPacketHeaderSize, size - wire::kPacketHeaderSize, message));
        }
    }
}

TEST(Tree, IsRefusedBeyondItsDepth) {
    for (const int depth : {wire::kMaxDepth, wire::kMaxDepth + 1}) {
        wire::Buffer tree;
        wire::TreeWriter writer(tree);
        std::vector<std::size_t> begun;
        for (int level = 0; level < depth; ++level)
            begun.push_back(writer.BeginBranch(0));
        for (auto begin = begun.rbegin(); begin != begun.rend(); ++begin)
            writer.EndBranch(*begin);
        EXPECT_EQ(wire::IsWellFormed(tree.GetData(), tree.GetSize()), depth == wire::kMaxDepth);
    }
}
