#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The part of a message before its tree: a fixed header and two names.
namespace wire {

enum class MessageKind : std::uint8_t {
    Hello = 1,   // client: who it is. Tree: HelloTag
    Welcome = 2, // daemon: which run it is. Tree: WelcomeTag
    Call = 3,    // client: interface, method, session; tree: every argument, tag = its index,
                 // direction set
    Reply = 4,   // daemon: the out arguments, tag = their index
    Signal = 5,  // daemon, on a signal connection only. Tree: SignalTag
    Log = 6,     // daemon, on a log connection only. Tree: LogTag
};

enum HelloTag : std::int16_t {
    kHelloVersion = 0, // 32 bits, kProtocolVersion
    kHelloToken = 1,   // 128 bits (array): the client, the same on all of its connections
    kHelloRole = 2,    // 32 bits, Role
    kHelloSession = 3, // 32 bits, signals only: the subscriber's session
    kHelloLogTag = 4,  // text, log only: the tag to follow
};
enum WelcomeTag : std::int16_t {
    kWelcomeVersion = 0, // 32 bits
    kWelcomeEpoch = 1,   // 64 bits: differs for each start of the daemon
    // 32 bits, optional: the client's number in this run. If it has changed, this client's sessions
    // were released while it was disconnected.
    kWelcomeClient = 2,
};
enum SignalTag : std::int16_t {
    kSignalType = 0,    // 32 bits
    kSignalProfile = 1, // 32 bits
    kSignalScreen = 2,  // 16 bits
    kSignalData = 3,    // 64 bits
    kSignalNumber = 4,  // 64 bits: number of the signal since the daemon's start
};

enum LogTag : std::int16_t {
    kLogLine = 0, // text: one line, without a line end
};

constexpr std::uint32_t kProtocolVersion = 1;
constexpr std::size_t kTokenSize = 16;

enum class Role : std::uint32_t {
    Calls = 0,
    Signals = 1,
    Log = 2,
};

constexpr std::size_t kMessageHeaderSize = 24;
// Maximum sizes of trees and names, for both ends.
constexpr std::uint32_t kMaxTreeSize = 64u << 20;
constexpr std::uint16_t kMaxNameSize = 255;

struct MessageHeader {
    MessageKind kind = MessageKind::Call;
    std::int16_t methodId = 0;
    std::uint32_t serial = 0;
    std::uint32_t session = 0; // 0: none
    std::uint16_t interfaceSize = 0;
    std::uint16_t methodSize = 0;
    std::uint32_t treeSize = 0;

    // Of the whole message: header, names and tree.
    std::size_t GetMessageSize() const {
        return kMessageHeaderSize + interfaceSize + std::size_t{methodSize} + treeSize;
    }
};

void EncodeMessageHeader(unsigned char* place, const MessageHeader& header);
// False for an unknown kind, lengths over the limits, or reserved bytes that are not 0: they are for
// later versions of the format.
bool DecodeMessageHeader(const void* data, std::size_t size, MessageHeader& header);

// A complete message for reading; views of the parsed bytes.
struct Message {
    MessageHeader header;
    std::string_view interfaceName;
    std::string_view method;
    const unsigned char* tree = nullptr;
};

// Parses a complete message. False unless its lengths add up to exactly `size`. The tree is not
// checked.
bool ParseMessage(const void* data, std::size_t size, Message& message);

} // namespace wire
