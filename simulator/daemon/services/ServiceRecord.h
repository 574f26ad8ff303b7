#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace sim {

constexpr std::int32_t kSecondsOfDay = 24 * 3600;

// One service of the line-up.
struct ServiceRecord {
    std::uint64_t id = 0;
    std::int32_t antenna = 0;   // on which it is received, or listed if streamed
    std::int32_t frequency = 0; // kHz; 0: streamed, no transponder
    std::int32_t major = 0;     // 0 to 65535
    std::int32_t minor = 0;     // 0 to 65535
    std::int32_t profile = 0;
    bool listed = true;
    bool hidden = false;
    bool captions = false;
    bool barker = false; // carries the programmes of other services
    std::string name;    // UTF-8

    bool IsStreamed() const { return frequency == 0; }
    // Field 1: air 1, cable 2, satellite 3, streamed 9.
    std::int32_t GetChannelType() const;

    bool operator==(const ServiceRecord&) const = default;
};

// A programme, which repeats every day at the same time (UTC).
struct ProgrammeRecord {
    std::int32_t start = 0;           // second of the day
    std::int32_t duration = 0;        // seconds, up to a day
    std::optional<std::string> title; // UTF-8; sent as UTF-16

    bool operator==(const ProgrammeRecord&) const = default;
};

} // namespace sim
