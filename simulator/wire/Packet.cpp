#include <algorithm>
#include <cstring>

#include <wire/Packet.h>

namespace wire {

namespace {

constexpr std::uint8_t kPacketVersion = 1;
// Memory that a receiver keeps between messages; that of a longer message is freed.
constexpr std::size_t kKeptMemory = 1u << 20;

} // namespace

void EncodePacketHeader(unsigned char* place, bool more) {
    std::memcpy(place, &kPacketMagic, 2);
    place[2] = kPacketVersion;
    place[3] = more ? kPacketMore : 0;
}

bool DecodePacketHeader(const void* data, std::size_t size, bool& more) {
    if (size < kPacketHeaderSize)
        return false;
    const auto* bytes = static_cast<const unsigned char*>(data);
    if (std::memcmp(bytes, &kPacketMagic, 2) != 0 || bytes[2] != kPacketVersion || (bytes[3] & ~kPacketMore) != 0)
        return false;
    more = bytes[3] == kPacketMore;
    return true;
}

PacketSender::PacketSender(MessageHeader header, std::string_view interfaceName, std::string_view method,
                           const void* tree, std::size_t treeSize) {
    header.interfaceSize = static_cast<std::uint16_t>(interfaceName.size());
    header.methodSize = static_cast<std::uint16_t>(method.size());
    header.treeSize = static_cast<std::uint32_t>(treeSize);
    EncodeMessageHeader(m_messageHeader, header);
    m_parts[0] = {m_messageHeader, kMessageHeaderSize};
    m_parts[1] = {const_cast<char*>(interfaceName.data()), interfaceName.size()};
    m_parts[2] = {const_cast<char*>(method.data()), method.size()};
    m_parts[3] = {const_cast<void*>(tree), treeSize};
    m_left = header.GetMessageSize();
}

int PacketSender::Next(iovec* pieces) {
    if (m_left == 0)
        return 0;
    std::size_t room = std::min(m_left, kMaxPacketPayload);
    m_left -= room;
    EncodePacketHeader(m_packetHeader, m_left > 0);
    pieces[0] = {m_packetHeader, kPacketHeaderSize};
    int count = 1;
    while (room > 0) {
        const iovec& part = m_parts[m_part];
        const std::size_t taken = std::min(part.iov_len - m_offset, room);
        if (taken > 0) {
            pieces[count++] = {static_cast<unsigned char*>(part.iov_base) + m_offset, taken};
            room -= taken;
            m_offset += taken;
        }
        if (m_offset == part.iov_len) {
            ++m_part;
            m_offset = 0;
        }
    }
    return count;
}

PacketAssembler::Result PacketAssembler::Feed(const void* packet, std::size_t size) {
    bool more = false;
    if (!DecodePacketHeader(packet, size, more))
        return Result::Malformed;
    const auto* payload = static_cast<const unsigned char*>(packet) + kPacketHeaderSize;
    const std::size_t payloadSize = size - kPacketHeaderSize;
    if (!m_inMessage) {
        MessageHeader header;
        if (!DecodeMessageHeader(payload, payloadSize, header))
            return Result::Malformed;
        m_expected = header.GetMessageSize();
        m_message.ClearAndTrim(kKeptMemory);
        m_inMessage = true;
    }
    const std::size_t missing = m_expected - m_message.GetSize();
    // Every packet but the last is full, so that a peer cannot split a message into countless tiny
    // ones.
    if (more ? payloadSize != kMaxPacketPayload || payloadSize >= missing : payloadSize != missing)
        return Result::Malformed;
    m_message.Append(payload, payloadSize);
    if (more)
        return Result::NeedMore;
    m_inMessage = false;
    return Result::Complete;
}

void PacketAssembler::Trim(std::size_t limit) {
    if (!m_inMessage)
        m_message.ClearAndTrim(limit);
}

} // namespace wire
