#include "Packets.h"

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
    return ToPackets(header, interfaceName, method, tree.data(), tree.size());
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
