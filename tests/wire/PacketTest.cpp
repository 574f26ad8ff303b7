#include <gtest/gtest.h>
#include <vector>

#include <wire/Packet.h>

namespace {

using Bytes = std::vector<unsigned char>;

std::vector<Bytes> PacketsOf(std::size_t treeSize) {
    Bytes tree(treeSize);
    for (std::size_t i = 0; i < treeSize; ++i)
        tree[i] = static_cast<unsigned char>(i * 7);
    wire::MessageHeader header;
    header.kind = wire::MessageKind::Reply;
    wire::PacketSender sender(header, "interface", "method", tree.data(), tree.size());
    std::vector<Bytes> packets;
    iovec pieces[wire::PacketSender::kMaxPieces];
    while (const int count = sender.Next(pieces)) {
        Bytes packet;
        for (int i = 0; i < count; ++i) {
            const auto* bytes = static_cast<const unsigned char*>(pieces[i].iov_base);
            packet.insert(packet.end(), bytes, bytes + pieces[i].iov_len);
        }
        packets.push_back(std::move(packet));
    }
    return packets;
}

wire::PacketAssembler::Result Feed(wire::PacketAssembler& assembler, const Bytes& packet) {
    return assembler.Feed(packet.data(), packet.size());
}

constexpr std::size_t kBeforeTree = wire::kMessageHeaderSize + 9 + 6;

} // namespace

TEST(Packet, MessagesOfAnyLengthComeBackWhole) {
    constexpr std::size_t kFull = wire::kMaxPacketPayload;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, kFull - kBeforeTree - 1, kFull - kBeforeTree,
          kFull - kBeforeTree + 1, 2 * kFull, 3 * kFull - kBeforeTree, std::size_t{1} << 20}) {
        SCOPED_TRACE(size);
        const std::vector<Bytes> packets = PacketsOf(size);
        EXPECT_EQ(packets.size(),
                  std::max<std::size_t>(1, (size + kBeforeTree + kFull - 1) / kFull));
        wire::PacketAssembler assembler;
        for (std::size_t i = 0; i < packets.size(); ++i) {
            EXPECT_LE(packets[i].size(), wire::kPacketHeaderSize + kFull);
            EXPECT_EQ(Feed(assembler, packets[i]), i + 1 < packets.size()
                                                       ? wire::PacketAssembler::Result::NeedMore
                                                       : wire::PacketAssembler::Result::Complete);
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
        for (const Bytes& packet : PacketsOf(100000))
            EXPECT_NE(Feed(assembler, packet), wire::PacketAssembler::Result::Malformed);
        EXPECT_EQ(assembler.GetMessage().GetSize(), kBeforeTree + 100000);
    }
}

TEST(Packet, APieceThatIsMissingIsFoundOut) {
    const std::vector<Bytes> packets = PacketsOf(200000);
    ASSERT_EQ(packets.size(), 4u);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packets[0]), wire::PacketAssembler::Result::NeedMore);
    EXPECT_EQ(Feed(assembler, packets[3]), wire::PacketAssembler::Result::Malformed);
}

TEST(Packet, ATinyPieceInTheMiddleIsRefused) {
    Bytes first = PacketsOf(200000)[0];
    first.resize(1000);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, first), wire::PacketAssembler::Result::Malformed);
}

TEST(Packet, ALengthOverTheLimitIsRefusedBeforeMemoryIsTaken) {
    Bytes packet = PacketsOf(16)[0];
    const std::uint32_t tooLong = wire::kMaxTreeSize + 1;
    std::copy_n(reinterpret_cast<const unsigned char*>(&tooLong), 4, packet.begin() + 4 + 16);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packet), wire::PacketAssembler::Result::Malformed);
    EXPECT_EQ(assembler.GetMessage().GetCapacity(), 0u);
}

TEST(Packet, AnnouncedLengthsTakeNoMemoryAhead) {
    Bytes packet = PacketsOf(200000)[0];
    const std::uint32_t longest = wire::kMaxTreeSize;
    std::copy_n(reinterpret_cast<const unsigned char*>(&longest), 4, packet.begin() + 4 + 16);
    wire::PacketAssembler assembler;
    EXPECT_EQ(Feed(assembler, packet), wire::PacketAssembler::Result::NeedMore);
    EXPECT_LT(assembler.GetMessage().GetCapacity(), std::size_t{1} << 20);
}

TEST(Packet, ForeignBytesAreRefused) {
    wire::PacketAssembler assembler;
    EXPECT_EQ(assembler.Feed("", 0), wire::PacketAssembler::Result::Malformed);
    EXPECT_EQ(assembler.Feed("GET / HTTP/1.1\r\n\r\n    ", 22),
              wire::PacketAssembler::Result::Malformed);
    for (std::size_t i = 0; i < wire::kPacketHeaderSize; ++i) {
        Bytes packet = PacketsOf(16)[0];
        packet[i] ^= 0x80;
        EXPECT_EQ(Feed(assembler, packet), wire::PacketAssembler::Result::Malformed) << i;
    }
}
