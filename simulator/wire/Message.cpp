#include <algorithm>
#include <cstring>

#include <wire/Message.h>

namespace wire {

void EncodeMessageHeader(unsigned char* place, const MessageHeader& header) {
    std::memset(place, 0, kMessageHeaderSize);
    place[0] = static_cast<unsigned char>(header.kind);
    std::memcpy(place + 2, &header.methodId, 2);
    std::memcpy(place + 4, &header.serial, 4);
    std::memcpy(place + 8, &header.session, 4);
    std::memcpy(place + 12, &header.interfaceSize, 2);
    std::memcpy(place + 14, &header.methodSize, 2);
    std::memcpy(place + 16, &header.treeSize, 4);
}

bool DecodeMessageHeader(const void* data, std::size_t size, MessageHeader& header) {
    if (size < kMessageHeaderSize)
        return false;
    const auto* bytes = static_cast<const unsigned char*>(data);
    if (bytes[0] < static_cast<unsigned char>(MessageKind::Hello) ||
        bytes[0] > static_cast<unsigned char>(MessageKind::Log))
        return false;
    // Reserved for later versions of the format.
    if (bytes[1] != 0 ||
        std::any_of(bytes + 20, bytes + kMessageHeaderSize, [](unsigned char byte) { return byte != 0; }))
        return false;
    header.kind = static_cast<MessageKind>(bytes[0]);
    std::memcpy(&header.methodId, bytes + 2, 2);
    std::memcpy(&header.serial, bytes + 4, 4);
    std::memcpy(&header.session, bytes + 8, 4);
    std::memcpy(&header.interfaceSize, bytes + 12, 2);
    std::memcpy(&header.methodSize, bytes + 14, 2);
    std::memcpy(&header.treeSize, bytes + 16, 4);
    return header.interfaceSize <= kMaxNameSize && header.methodSize <= kMaxNameSize && header.treeSize <= kMaxTreeSize;
}

bool ParseMessage(const void* data, std::size_t size, Message& message) {
    if (!DecodeMessageHeader(data, size, message.header) || message.header.GetMessageSize() != size)
        return false;
    const auto* names = static_cast<const unsigned char*>(data) + kMessageHeaderSize;
    message.interfaceName = {reinterpret_cast<const char*>(names), message.header.interfaceSize};
    names += message.header.interfaceSize;
    message.method = {reinterpret_cast<const char*>(names), message.header.methodSize};
    message.tree = names + message.header.methodSize;
    return true;
}

} // namespace wire
