#pragma once

#include <string_view>
#include <vector>

#include <wire/Packet.h>

using Packet = std::vector<unsigned char>;

// The packets that a message goes out in. Its lengths are set from what it holds.
inline std::vector<Packet> ToPackets(const wire::MessageHeader& header, std::string_view interfaceName,
                                     std::string_view method, const void* tree, std::size_t treeSize) {
    wire::PacketSender sender(header, interfaceName, method, tree, treeSize);
    std::vector<Packet> packets;
    iovec pieces[wire::PacketSender::kMaxPieces];
    while (const int count = sender.Next(pieces)) {
        Packet& packet = packets.emplace_back();
        for (int piece = 0; piece < count; ++piece) {
            const auto* bytes = static_cast<const unsigned char*>(pieces[piece].iov_base);
            packet.insert(packet.end(), bytes, bytes + pieces[piece].iov_len);
        }
    }
    return packets;
}
