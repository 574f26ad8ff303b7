#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <values/Values.h>

#include "ReplyWriter.h"

namespace sim {

using values::TvMode;

// What carries services over an antenna.
struct Transponder {
    std::int32_t antenna = 0;
    std::int32_t frequency = 0; // kHz; 0: whatever is there

    auto operator<=>(const Transponder&) const = default;
    // "air/474000", or "air" for a frequency of 0.
    std::string ToText() const;
};

// The antenna's word ("air", "cable", "satellite"), or its number in digits.
std::string ToAntennaName(std::int32_t antenna);
// A transponder from its word. Nothing for what is none.
std::optional<Transponder> ParseTransponder(const std::string& word);

// What a pipeline has to know of a service.
struct ServiceFacts {
    std::int32_t antenna = -1;  // -1: of any antenna
    std::int32_t frequency = 0; // kHz; 0: comes over no transponder that is known
    bool streamed = false;      // comes over the internet: needs no tuner, no antenna's signal
    bool captions = false;
    // As the signal tells them that a service's information has begun to come.
    std::int16_t channelType = 0;
    std::int16_t profile = 0;
    std::int16_t major = 0;

    bool operator==(const ServiceFacts&) const = default;
};

// The payload of SIGNAL_SI_STARTED.
std::uint64_t ToSignalData(const ServiceFacts& facts);

// What a line-up that was set up can do beside.
class ChannelList {
public:
    virtual ~ChannelList() = default;
    // GetServiceList's answer: status and records, of the services of that TV mode.
    virtual void List(const values::Criteria& criteria, const TvMode& tvMode, std::int32_t first,
                      std::int32_t count, ReplyWriter& out) = 0;
    // The service that the TV starts with. -1 in the TV mode: whatever it is. kDone or a refusal,
    // which is in the log then.
    virtual std::int32_t SetBootupService(std::uint64_t service, const TvMode& tvMode,
                                          std::int32_t option) = 0;
};

// Where the pipelines ask what a service id is.
class LineUp {
public:
    virtual ~LineUp() = default;
    // Nothing for an id that no service has.
    virtual std::optional<ServiceFacts> FindFacts(std::uint64_t service) = 0;
    // Null: there is nothing but the facts.
    virtual ChannelList* GetChannelList() { return nullptr; }
};

} // namespace sim
