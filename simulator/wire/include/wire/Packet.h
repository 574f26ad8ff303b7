#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <sys/uio.h>

#include <wire/Buffer.h>
#include <wire/Message.h>

// Packets: the content of one send on a SOCK_SEQPACKET socket. A message that is too long for one
// packet is sent as several, all but the last with the "more" flag; packets of different messages
// are never interleaved on a connection.
namespace wire {

constexpr std::size_t kPacketHeaderSize = 4;
// Bytes of a message in one packet. The kernel refuses packets near the size of the default socket
// buffers.
constexpr std::size_t kMaxPacketPayload = 60u << 10;

constexpr std::uint16_t kPacketMagic = 0x564E; // "NV"
constexpr std::uint8_t kPacketMore = 1;        // flag: the message continues in the next packet

void EncodePacketHeader(unsigned char* place, bool more);
// False unless it is a packet header of this protocol.
bool DecodePacketHeader(const void* data, std::size_t size, bool& more);

// Splits a message into packets, without copying it. Next returns the pieces of one packet at a
// time, for sendmsg.
class PacketSender {
public:
    // The data of `names` and `tree` must outlive the sender. The header's lengths are set from
    // them.
    PacketSender(MessageHeader header, std::string_view interfaceName, std::string_view method, const void* tree,
                 std::size_t treeSize);

    // Fills `pieces` (room for kMaxPieces) with the next packet; returns the number of pieces used,
    // 0 when everything is sent.
    static constexpr int kMaxPieces = 5;
    int Next(iovec* pieces);

private:
    unsigned char m_packetHeader[kPacketHeaderSize] = {};
    unsigned char m_messageHeader[kMessageHeaderSize];
    iovec m_parts[4];
    int m_part = 0;
    std::size_t m_offset = 0;
    std::size_t m_left;
};

// Assembles the packets of a connection into messages.
class PacketAssembler {
public:
    enum class Result { NeedMore, Complete, Malformed };

    // Takes one packet with its header. A message's length is checked against its header before
    // memory is allocated.
    Result Feed(const void* packet, std::size_t size);
    // The message, after Complete; valid until the next Feed.
    const Buffer& GetMessage() const { return m_message; }
    bool IsInMessage() const { return m_inMessage; }
    // To be called after the message has been used: frees memory beyond `limit`.
    void Trim(std::size_t limit);

private:
    Buffer m_message;
    std::size_t m_expected = 0;
    bool m_inMessage = false;
};

} // namespace wire
