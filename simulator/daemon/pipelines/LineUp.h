#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <values/Values.h>

#include "ReplyWriter.h"

namespace sim {

using values::TvMode;

// A frequency of an antenna.
struct Transponder {
    std::int32_t antenna = 0;
    std::int32_t frequency = 0; // kHz; 0: any

    auto operator<=>(const Transponder&) const = default;
    // "air/474000", or "air" for a frequency of 0.
    std::string ToText() const;
};

// The antenna's name ("air", "cable", "satellite"), or its number.
std::string ToAntennaName(std::int32_t antenna);
// Parses a transponder. Nothing for anything else.
std::optional<Transponder> ParseTransponder(const std::string& word);

// A pipeline's data of a service.
struct ServiceFacts {
    std::int32_t antenna = -1;  // -1: any antenna
    std::int32_t frequency = 0; // kHz; 0: no known transponder
    bool streamed = false;      // over the internet: needs no tuner and no antenna signal
    bool captions = false;
    // The values in SIGNAL_SI_STARTED.
    std::int16_t channelType = 0;
    std::int16_t profile = 0;
    std::int16_t major = 0;

    bool operator==(const ServiceFacts&) const = default;
};

// The payload of SIGNAL_SI_STARTED.
std::uint64_t ToSignalData(const ServiceFacts& facts);

// Further operations of a line-up.
class ChannelList {
public:
    virtual ~ChannelList() = default;
    // GetServiceList's answer: status and records, of the services of that TV mode.
    virtual void List(const values::Criteria& criteria, const TvMode& tvMode, std::int32_t first, std::int32_t count,
                      ReplyWriter& out) = 0;
    // Sets the service that the TV starts with. -1 in the TV mode: any. Returns kDone or a refusal,
    // which has been logged.
    virtual std::int32_t SetBootupService(std::uint64_t service, const TvMode& tvMode, std::int32_t option) = 0;
};

// The pipelines' view of the services.
class LineUp {
public:
    virtual ~LineUp() = default;
    // Nothing for an unknown id.
    virtual std::optional<ServiceFacts> FindFacts(std::uint64_t service) = 0;
    // Null: only the facts are available.
    virtual ChannelList* GetChannelList() { return nullptr; }
};

} // namespace sim
