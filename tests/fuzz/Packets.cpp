#include "Packets.h"

#include <wire/Packet.h>

namespace {

Packet Raw(Input& input) {
    const auto bytes = input.Take(input.Short());
    return {bytes.begin(), bytes.end()};
}

Packet WithHeader(Input& input, bool more) {
    Packet packet(wire::kPacketHeaderSize);
    wire::EncodePacketHeader(packet.data(), more);
    const auto bytes = input.Take(input.Short());
    packet.insert(packet.end(), bytes.begin(), bytes.end());
    if (more)
        packet.resize(wire::kPacketHeaderSize + wire::kMaxPacketPayload);
    return packet;
}

std::vector<Packet> Whole(Input& input, std::uint32_t serial) {
    wire::MessageHeader header;
    header.kind = static_cast<wire::MessageKind>(input.Byte());
    header.methodId = input.Byte();
    header.serial = serial + static_cast<std::uint32_t>(static_cast<std::int8_t>(input.Byte()));
    header.session = input.Byte();
    const std::string_view interfaceName = input.Text(input.Byte());
    const std::string_view method = input.Text(input.Byte());
    const auto tree = input.Take(input.Short());
    wire::PacketSender sender(header, interfaceName, method, tree.data(), tree.size());
    iovec pieces[wire::PacketSender::kMaxPieces];
    std::vector<Packet> packets;
    for (int count = 0; (count = sender.Next(pieces)) > 0;) {
        Packet packet;
        for (int piece = 0; piece < count; ++piece) {
            const auto* begin = static_cast<const unsigned char*>(pieces[piece].iov_base);
            packet.insert(packet.end(), begin, begin + pieces[piece].iov_len);
        }
        packets.push_back(std::move(packet));
    }
    return packets;
}

} // namespace

std::vector<Packet> TakePackets(Input& input, std::uint32_t serial) {
    switch (input.Byte() & 3) {
    case 0:
        return {Raw(input)};
    case 1:
        return {WithHeader(input, false)};
    case 2:
        return {WithHeader(input, true)};
    default:
        return Whole(input, serial);
    }
}
