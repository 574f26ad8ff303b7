#pragma once

#include <cstdint>
#include <vector>

#include "Input.h"
#include "MessagePackets.h"

// The next thing that a peer sends: mostly one packet, a message that is put together in order may
// be several. The input says which way it is made:
//   0  bytes as they stand
//   1  bytes after a good packet header
//   2  a full packet of which more is to follow: bytes after a good header, filled up
//   3  a message whose lengths are right, cut into packets
// so that the fuzzer need not guess sizes and magic numbers, and can still get every one of them
// wrong. Serials of messages are relative to `serial`.
std::vector<Packet> TakePackets(Input& input, std::uint32_t serial = 0);
