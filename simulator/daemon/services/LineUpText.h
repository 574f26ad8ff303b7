#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "LineUp.h"
#include "ServiceRecord.h"

// The text format of line-ups; docs/lineup.md describes it.
namespace sim {

// Receives the content of a text, line by line.
class LineUpSink {
public:
    virtual ~LineUpSink() = default;
    // Each returns an empty text, or what was expected instead.
    virtual std::string AddService(const ServiceRecord& service) = 0;
    virtual std::string AddProgramme(std::uint64_t service, const ProgrammeRecord& programme) = 0;
};

// False at the first malformed line: `error` is "NAME:LINE: expected ..., found ...". The sink has
// received the lines before it.
bool ReadLineUp(std::string_view text, const std::string& name, LineUpSink& sink, std::string& error);

// Writes the format that ReadLineUp reads: services in order, each followed by its programmes.
class LineUpWriter {
public:
    void Add(const ServiceRecord& service);
    void Add(const ProgrammeRecord& programme);
    // The text written since the last call.
    std::string Take() { return std::exchange(m_text, {}); }

private:
    std::string m_text;
    std::string m_heading; // of the next service
};

} // namespace sim
