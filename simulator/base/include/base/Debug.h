#pragma once

#include <array>
#include <bitset>
#include <cstddef>

namespace sim {

// What the TV's debug menu switches: first its items, each of which adds the lines of one part to
// the log and to the open dialogues, then its modes.
enum class Debug : unsigned char {
    TunerLock,
    SectionFilter,
    ChannelChange,
    ServiceList,
    SignalQueue,
    VideoDecoder,
    AudioDecoder,
    Captions,
    ZoomWindows,
    CropVideo,
    ScanProgress,
    Preparation,
    HdmiInput,
    Sessions,
    DatabaseAccess,
    MemoryUse,
    Trace,  // each call with its arguments and results
    Timing, // how long each call took
    Frames, // frames shown by a pipeline
    DryRun, // calls that would change the TV are not executed
};

struct DebugPart {
    const char* name;
    const char* tag; // of its lines
};

constexpr std::size_t kDebugItems = 16;
constexpr std::size_t kDebugModes = 4;
// By number: the items, then the modes.
extern const std::array<DebugPart, kDebugItems + kDebugModes> kDebugParts;

// What is on.
struct DebugState {
    std::bitset<kDebugItems + kDebugModes> parts;
    bool qos = false; // late frames are dropped

    bool IsOn(Debug part) const { return parts[static_cast<std::size_t>(part)]; }
};

} // namespace sim
